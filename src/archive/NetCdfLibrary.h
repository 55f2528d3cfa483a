#pragma once

#include <netcdf.h>
#include <netcdf_mem.h>

#include <QLibrary>

#include "base/Fault.h"

namespace tessmar {

/// The library that makes NetCDF files is not to be had.
class NetCdfMissing : public FileFault {
 public:
  using FileFault::FileFault;
};

/// The functions of the NetCDF library, by their names without "nc_".
///
/// The library is loaded when the first file is made. Linked, it would bring some forty others into
/// every start of the program and of the command, and that costs more than the start itself.
class NetCdfLibrary {
 public:
  /// Throws NetCdfMissing.
  NetCdfLibrary();

  decltype(&::nc_strerror) strerror = nullptr;
  decltype(&::nc_create_mem) create_mem = nullptr;
  decltype(&::nc_close_memio) close_memio = nullptr;
  decltype(&::nc_abort) abort = nullptr;
  decltype(&::nc_def_dim) def_dim = nullptr;
  decltype(&::nc_def_var) def_var = nullptr;
  decltype(&::nc_def_var_fill) def_var_fill = nullptr;
  decltype(&::nc_def_var_chunking) def_var_chunking = nullptr;
  decltype(&::nc_enddef) enddef = nullptr;
  decltype(&::nc_put_att_text) put_att_text = nullptr;
  decltype(&::nc_put_att_int) put_att_int = nullptr;
  decltype(&::nc_put_att_schar) put_att_schar = nullptr;
  decltype(&::nc_put_vara_text) put_vara_text = nullptr;
  decltype(&::nc_put_vara_double) put_vara_double = nullptr;
  decltype(&::nc_put_vara_schar) put_vara_schar = nullptr;
  decltype(&::nc_put_var1_longlong) put_var1_longlong = nullptr;

  /// Throws FileFault for a status that is not NC_NOERR.
  void Check(int status) const;

 private:
  template <typename Function>
  void Resolve(Function& function, const char* name) {
    function = reinterpret_cast<Function>(library_.resolve(name));
    if (function == nullptr) throw NetCdfMissing(std::string("NetCDF library without ") + name);
  }

  QLibrary library_;
};

}  // namespace tessmar
