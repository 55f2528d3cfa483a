#include "cli/Output.h"

#include <QFileDevice>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr TwoLanguages kNotTaken{u"standard output takes no more",
                                 u"die Standardausgabe nimmt nichts mehr an"};

}  // namespace

void Output::Data(const QString& line) {
  Raw(line + u'\n');
}

void Output::Raw(const QString& text) {
  EndProgress();
  const QByteArray bytes = text.toUtf8();
  if (out_.write(bytes) != bytes.size()) throw CommandFailure(kNotTaken.Text());
  auto* const file = qobject_cast<QFileDevice*>(&out_);
  if (file != nullptr && !file->flush()) throw CommandFailure(kNotTaken.Text());
}

void Output::Remark(const QString& text) {
  if (!quiet_) Words(text);
}

void Output::Complaint(const QString& text) {
  Words(text);
}

void Output::Progress(const QString& text) {
  if (!ShowsProgress()) return;
  // Back to the first column, and what is left of the line before is erased.
  words_.write((u'\r' + text + u"\x1b[K"_s).toUtf8());
  inProgress_ = true;
}

void Output::EndProgress() {
  if (!inProgress_) return;
  words_.write("\r\x1b[K");
  inProgress_ = false;
}

void Output::Words(const QString& text) {
  EndProgress();
  // One line, whatever it was made of.
  words_.write((u"tessmar: "_s + text.simplified() + u'\n').toUtf8());
}

}  // namespace tessmar
