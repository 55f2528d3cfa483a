#include "app/frmAbout.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>

#include "base/TextTable.h"
#include "ui/Pictures.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// A line of text over the picture, its top at a percentage of the inner height.
QLabel* LineOverPicture(QWidget* form, const QString& name, const QString& text, int topPercent) {
  auto* label = new QLabel(text, form);
  label->setObjectName(name);
  label->setAccessibleName(text);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  // White in every theme: the picture under it is always the same.
  QPalette palette = label->palette();
  palette.setColor(QPalette::WindowText, Qt::white);
  label->setPalette(palette);
  label->move(0, form->height() * topPercent / 100);
  return label;
}

QString LicenceText() {
  return TextLanguage() == kLanguageGerman
             ? u"Freie Software unter der GNU GPL 3; die Quellen unter MIT"_s
             : u"Free software under the GNU GPL 3; its sources under MIT"_s;
}

void Widen(QLabel* label, int width) {
  label->resize(width, label->sizeHint().height());
}

}  // namespace

frmAbout::frmAbout(const QString& title, QWidget* parent, const std::function<QString()>& details)
    : QDialog(parent) {
  setObjectName(u"frmAbout"_s);
  setWindowTitle(GetText(TextId::AboutCaption));
  setAccessibleName(windowTitle());
  setFixedSize(kPondPictureSize);

  auto* picture = new QLabel(this);
  picture->setObjectName(u"Picture1"_s);
  picture->setAccessibleName(title);
  picture->setPixmap(PondPicture(devicePixelRatioF()));
  picture->resize(kPondPictureSize);

  constexpr int kVersionTopPercent = 65;
  constexpr int kCopyrightTopPercent = 80;
  constexpr int kLicenceTopPercent = 88;
  QLabel* version = LineOverPicture(this, u"lblVersion"_s, title, kVersionTopPercent);
  QFont large = version->font();
  large.setPointSizeF(large.pointSizeF() * 1.5);
  large.setBold(true);
  version->setFont(large);
  Widen(version, width());
  Widen(LineOverPicture(this, u"lblCopyright"_s, u"© the Tessmar Logger authors"_s,
                        kCopyrightTopPercent),
        width());
  Widen(LineOverPicture(this, u"lblLicence"_s, LicenceText(), kLicenceTopPercent), width());
  if (details) AddCopyDetails(details);
}

void frmAbout::AddCopyDetails(const std::function<QString()>& details) {
  // In the sky: what stands over the water keeps its places.
  constexpr int kButtonTopPercent = 4;
  auto* button = new QPushButton(
      InLanguage(u"Copy details for support", u"Angaben für den Support kopieren"), this);
  button->setObjectName(u"cmdCopyDetails"_s);
  button->adjustSize();
  button->move((width() - button->width()) / 2, height() * kButtonTopPercent / 100);
  QObject::connect(button, &QPushButton::clicked, this, [button, details] {
    QGuiApplication::clipboard()->setText(details());
    button->setText(InLanguage(u"Copied", u"Kopiert"));
  });
}

}  // namespace tessmar
