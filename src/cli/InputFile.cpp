#include "cli/InputFile.h"

#include "base/FileTrouble.h"
#include "base/ReadFile.h"
#include "cli/Output.h"

namespace tessmar {
namespace {

CommandFailure FailureOf(const FileTrouble& trouble) {
  const bool isWrong = trouble.Cause() == FileCause::NotFound ||
                       trouble.Cause() == FileCause::NoFolder ||
                       trouble.Cause() == FileCause::NotAFile;
  return CommandFailure(trouble.Text(), isWrong ? kCommandWrongUsage : kCommandFailed);
}

}  // namespace

QByteArray ReadInput(const QString& path, qint64 limit) {
  try {
    return ReadWholeFile(path, limit);
  } catch (const FileTrouble& trouble) {
    throw FailureOf(trouble);
  }
}

void CheckInput(const QString& path) {
  try {
    ReadFileStart(path, 1);
  } catch (const FileTrouble& trouble) {
    throw FailureOf(trouble);
  }
}

}  // namespace tessmar
