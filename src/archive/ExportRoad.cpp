#include "archive/ExportRoad.h"

#include <QDir>
#include <QPointer>
#include <QWidget>
#include <array>
#include <new>

#include "archive/ArchiveTexts.h"
#include "archive/ExportTexts.h"
#include "archive/NetCdfLibrary.h"
#include "archive/WindowTexts.h"
#include "archive/frmExport.h"
#include "base/FileTrouble.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Id = ExportTextId;

constexpr std::array kKinds{ExportKind::ViewerCsv, ExportKind::AnalysisCsv, ExportKind::NetCdf};

QString Filter() {
  return GetText(Id::ViewerFiles) + u" (*.csv)|*.csv|"_s + GetText(Id::AnalysisFiles) +
         u" (*.csv)|*.csv|"_s + GetText(Id::NetCdfFiles) + u" (*.nc)|*.nc"_s;
}

/// The kind that was chosen, unless the name says another.
ExportKind KindOf(const QString& path, int part) {
  const ExportKind chosen = kKinds.at(static_cast<std::size_t>(part));
  const std::optional<ExportKind> named = ExportKindOf(path);
  const bool isNetCdf = chosen == ExportKind::NetCdf;
  if (!named || (*named == ExportKind::NetCdf) == isNetCdf) return chosen;
  return *named;
}

QString DoneText(const ExportResult& result, const QString& path) {
  const QString file = QDir::toNativeSeparators(path);
  if (result.Stopped) return GetText(Id::Cancelled).arg(file);
  if (result.Disagreements == 0)
    return GetText(Id::Done).arg(QString::number(result.Records), file);
  return GetText(Id::DoneDisagreeing)
      .arg(QString::number(result.Records), file, QString::number(result.Disagreements));
}

/// What cannot be told by a result is told here, in a message.
class Attempt {
 public:
  Attempt(const ExportParts& parts, QWidget& window) : parts_(parts), window_(window) {}

  std::optional<QString> Run(const ExportWish& wish, const QString& path, const ExportForm& form) {
    const QPointer<QWidget> window(&window_);
    QString trouble;
    try {
      ExportResult result;
      frmExport(&window_).Run(
          [&](ExportState& state) { result = RunExport(wish, path, form, state); });
      if (window.isNull()) return std::nullopt;
      if (result.Stopped || result.Records > 0) return DoneText(result, path);
      parts_.Message.MsgBox(GetText(Id::NoRecords), kInformation, GetText(Id::Title));
      return std::nullopt;
    } catch (const FileTrouble& caught) {
      trouble = caught.Text();
    } catch (const ArchiveFault& caught) {
      trouble = GetText(WindowTextId::NotRead) + u"\r\n"_s + TroubleText(caught.Trouble());
    } catch (const NetCdfMissing&) {
      trouble = GetText(Id::NoLibrary);
    } catch (const MixedChannels&) {
      trouble = GetText(Id::MixedChannels);
    } catch (const std::bad_alloc&) {
      trouble = GetText(Id::NoMemory);
    } catch (const Fault&) {
      trouble = GetText(Id::Failed).arg(QDir::toNativeSeparators(path));
    }
    parts_.Message.MsgBox(trouble, kExclamation, GetText(Id::Title));
    return std::nullopt;
  }

 private:
  const ExportParts& parts_;
  QWidget& window_;
};

}  // namespace

std::optional<QString> ExportFromWindow(const ExportParts& parts, const ExportWish& wish,
                                        QWidget& window) {
  const QPointer<QWidget> self(&window);
  int part = 0;
  const std::optional<QString> path =
      parts.Dialogs.AskSave({.Title = GetText(Id::Title),
                             .InitialName = parts.AppPath + u"/*.csv"_s,
                             .Filter = Filter(),
                             .DefaultExtension = u".csv"_s,
                             .ConfirmOverwrite = true,
                             .Part = &part});
  if (self.isNull() || !path) return std::nullopt;
  return Attempt(parts, window)
      .Run(wish, *path,
           {.Kind = KindOf(*path, part),
            .Locale = parts.Locale,
            .Saved = parts.Time.Now(),
            .Program = parts.Program,
            .SingleColumn = parts.SingleColumn,
            .ShowRelays = parts.ShowRelays});
}

}  // namespace tessmar
