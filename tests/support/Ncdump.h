#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace tessmar::test {

/// What ncdump, with these options, says of a NetCDF file.
inline QString DumpOfFile(const QString& file, const QStringList& options) {
  QProcess ncdump;
  ncdump.start(QStringLiteral("ncdump"), options + QStringList{file});
  EXPECT_TRUE(ncdump.waitForFinished(30000));
  EXPECT_EQ(ncdump.readAllStandardError(), "");
  return QString::fromUtf8(ncdump.readAllStandardOutput());
}

/// The same of the bytes of a file, which is named "pond".
inline QString Dumped(const QByteArray& bytes, const QStringList& options) {
  const QTemporaryDir folder;
  QFile file(folder.filePath(QStringLiteral("pond.nc")));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(bytes);
  file.close();
  return DumpOfFile(file.fileName(), options);
}

}  // namespace tessmar::test
