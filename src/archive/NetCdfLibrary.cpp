#include "archive/NetCdfLibrary.h"

namespace tessmar {

NetCdfLibrary::NetCdfLibrary() : library_(QStringLiteral(TESSMAR_NETCDF_LIBRARY)) {
  if (!library_.load()) throw NetCdfMissing(library_.errorString().toStdString());
  Resolve(strerror, "nc_strerror");
  Resolve(create_mem, "nc_create_mem");
  Resolve(close_memio, "nc_close_memio");
  Resolve(abort, "nc_abort");
  Resolve(def_dim, "nc_def_dim");
  Resolve(def_var, "nc_def_var");
  Resolve(def_var_fill, "nc_def_var_fill");
  Resolve(def_var_chunking, "nc_def_var_chunking");
  Resolve(enddef, "nc_enddef");
  Resolve(put_att_text, "nc_put_att_text");
  Resolve(put_att_int, "nc_put_att_int");
  Resolve(put_att_schar, "nc_put_att_schar");
  Resolve(put_vara_text, "nc_put_vara_text");
  Resolve(put_vara_double, "nc_put_vara_double");
  Resolve(put_vara_schar, "nc_put_vara_schar");
  Resolve(put_var1_longlong, "nc_put_var1_longlong");
}

void NetCdfLibrary::Check(int status) const {
  if (status != NC_NOERR) throw FileFault(std::string("NetCDF: ") + strerror(status));
}

}  // namespace tessmar
