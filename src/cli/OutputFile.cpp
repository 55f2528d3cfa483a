#include "cli/OutputFile.h"

namespace tessmar {

void OutputFile::Check(const QString& path) {
  if (path == kStandardOutput) return;
  if (const std::optional<FileTrouble> trouble = WriteTrouble(path)) throw *trouble;
}

OutputFile::OutputFile(Output& out, const QString& path) : out_(out) {
  if (path != kStandardOutput) file_.emplace(path);
}

QIODevice& OutputFile::Device() {
  return file_ ? file_->Device() : out_.Device();
}

void OutputFile::ThrowFailure() const {
  if (file_) file_->ThrowFailure();
}

void OutputFile::Commit() {
  if (file_) {
    file_->Commit();
  } else {
    out_.Raw({});
  }
}

}  // namespace tessmar
