#include "ui/QtFileDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeDatabase>
#include <QPointer>
#include <QTreeView>
#include <algorithm>
#include <utility>

#include "base/FileNames.h"
#include "base/TextTable.h"
#include "base/WholeFile.h"
#include "ui/ActiveWindow.h"
#include "ui/EnterKey.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Tells files and folders apart and looks into neither: the toolkit's own reads the beginning of
/// each file in the list for its icon, and waits there for what never comes.
class PlainIcons final : public QFileIconProvider {
 public:
  QIcon icon(const QFileInfo& info) const override {
    return QFileIconProvider::icon(info.isDir() ? Folder : File);
  }
  using QFileIconProvider::icon;
  QString type(const QFileInfo& info) const override {
    if (info.isDir()) return InLanguage(u"Folder", u"Ordner");
    const QMimeDatabase types;
    return types.mimeTypeForFile(info.fileName(), QMimeDatabase::MatchExtension).comment();
  }
};

/// Holds the icons for longer than the dialog, whose thread uses them until it ends.
struct IconsOfDialog {
  PlainIcons Icons;
};

/// The file dialog with the program's own checks and questions in place of the toolkit's.
class FileDialog : private IconsOfDialog, public QFileDialog {
 public:
  FileDialog(QWidget* parent, Messages& messages, const std::function<bool()>& ending,
             const FileDialogRequest& request, AcceptMode mode)
      : QFileDialog(parent), messages_(messages), ending_(ending), request_(request) {
    setObjectName(u"dlgFile"_s);
    setIconProvider(&Icons);
    setOptions(DontUseNativeDialog | DontConfirmOverwrite | DontUseCustomDirectoryIcons);
    setWindowTitle(request.Title);
    setAccessibleName(request.Title);
    setAcceptMode(mode);
    setFileMode(AnyFile);
    const QStringList filters = FileFilters(request.Filter);
    if (!filters.isEmpty()) setNameFilters(filters);
    LabelControls();
    GoToStart();
    // Room for the dates in the list of files.
    if (auto* list = findChild<QTreeView*>(u"treeView"_s)) {
      list->header()->setStretchLastSection(true);
    }
    const QSize usual = sizeHint();
    resize(usual.width() * 5 / 4, usual.height());
  }

  /// The name taken, once the dialog was accepted.
  const QString& Chosen() const { return chosen_; }
  /// The part of the filter that stood there then, from 0.
  int Part() const {
    return std::max(static_cast<int>(nameFilters().indexOf(selectedNameFilter())), 0);
  }

 protected:
  void accept() override {
    const QStringList selected = selectedFiles();
    if (selected.isEmpty()) return;
    const QString name = Completed(selected.first());
    if (QFileInfo(name).isDir()) {
      QFileDialog::accept();  // Goes into that folder.
      return;
    }
    if (!MayTake(name)) return;
    chosen_ = name;
    // Past the base class, which would ask its own questions about the name.
    done(Accepted);
  }

  // The buttons beside the list of folders are no default buttons, and Enter on one of them would
  // press Save.
  void keyPressEvent(QKeyEvent* event) override {
    if (!PressFocusedButton(*this, *event)) QFileDialog::keyPressEvent(event);
  }

 private:
  void LabelControls() {
    const bool opens = acceptMode() == AcceptOpen;
    setLabelText(LookIn, InLanguage(u"Look in:", u"Suchen in:"));
    setLabelText(FileName, InLanguage(u"File &name:", u"Datei&name:"));
    setLabelText(FileType, InLanguage(u"Files of type:", u"Dateityp:"));
    setLabelText(Accept,
                 opens ? InLanguage(u"&Open", u"Ö&ffnen") : InLanguage(u"&Save", u"&Speichern"));
    setLabelText(Reject, GetText(TextId::Cancel));
  }

  void GoToStart() {
    const FileDialogStart start = StartOfFileDialog(request_.InitialName);
    const bool hasFolder = !start.Folder.isEmpty() && QDir(start.Folder).exists();
    setDirectory(hasFolder ? start.Folder : QDir::homePath());
    if (!start.Name.isEmpty()) selectFile(start.Name);
  }

  /// The name with the default extension; an existing file to open keeps the name that it has.
  QString Completed(const QString& name) const {
    const QFileInfo info(name);
    const bool isThere = info.isDir() || (acceptMode() == AcceptOpen && info.exists());
    return isThere ? name : WithDefaultExtension(name, Extension());
  }

  QString Extension() const {
    const QString own =
        nameFilters().size() > 1 ? ExtensionOfFilter(request_.Filter, Part()) : QString();
    return own.isEmpty() ? request_.DefaultExtension : own;
  }

  /// Tells the operator why not, or asks, before a name is taken.
  bool MayTake(const QString& name) {
    const QFileInfo info(name);
    const QString shown = QDir::toNativeSeparators(name);
    if (acceptMode() == AcceptOpen) {
      if (info.exists()) return true;
      Refuse(InLanguage(u"The file does not exist:", u"Die Datei existiert nicht:"), shown);
      return false;
    }
    if (const std::optional<FileTrouble> trouble = WriteTrouble(name)) {
      messages_.MsgBox(trouble->Text(), kOkOnly | kExclamation, request_.Title);
      return false;
    }
    if (!request_.ConfirmOverwrite || !info.exists()) return true;
    const QString question = InLanguage(u"The file already exists. Do you want to replace it?",
                                        u"Die Datei existiert bereits. Wollen Sie sie ersetzen?");
    const int answer = messages_.MsgBox(question + u"\r\n"_s + shown,
                                        kYesNo | kExclamation | kDefaultButton2, request_.Title);
    return answer == kYes && !ending_();
  }

  void Refuse(const QString& reason, const QString& name) {
    messages_.MsgBox(reason + u"\r\n"_s + name, kOkOnly | kExclamation, request_.Title);
  }

  Messages& messages_;
  const std::function<bool()>& ending_;
  const FileDialogRequest request_;
  QString chosen_;
};

}  // namespace

QtFileDialogs::QtFileDialogs(Messages& messages, std::function<bool()> ending)
    : messages_(messages), ending_(std::move(ending)) {
  if (!ending_) ending_ = [] { return false; };
}

std::optional<QString> QtFileDialogs::AskOpen(const FileDialogRequest& request) {
  return Ask(request, Purpose::Open);
}

std::optional<QString> QtFileDialogs::AskSave(const FileDialogRequest& request) {
  return Ask(request, Purpose::Save);
}

std::optional<QString> QtFileDialogs::Ask(const FileDialogRequest& request, Purpose purpose) {
  if (ending_()) return std::nullopt;
  const auto mode = purpose == Purpose::Open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave;
  // The window that the dialog belongs to may go while it is open, and the dialog with it.
  const QPointer<FileDialog> dialog =
      new FileDialog(ActiveWindow(), messages_, ending_, request, mode);
  const bool accepted = dialog->exec() == QDialog::Accepted && !dialog.isNull() && !ending_();
  std::optional<QString> chosen;
  if (accepted) chosen = dialog->Chosen();
  if (accepted && request.Part != nullptr) *request.Part = dialog->Part();
  delete dialog;
  return chosen;
}

}  // namespace tessmar
