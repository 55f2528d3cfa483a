// The menus of the main window, and what each entry asks for.

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "app/frmMain.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

struct EntryRow {
  const char* Name;  ///< Behind the menu's prefix.
  MainCommand Command;
  const char* Shortcut;  ///< Of the English set only.
  const char* Caption;   ///< Of both sets, until the set of the language gets its own.
};

// The entries of both Action menus, in order.
constexpr EntryRow kActionEntries[] = {
    {"Connect", MainCommand::Connect, "Ctrl+N", "Co&nnect"},
    {"Disconnect", MainCommand::Disconnect, "Ctrl+D", "&Disconnect"},
    {"SampleContinuously", MainCommand::ToggleSampling, "Ctrl+A", "S&ample Continuously"},
    {"GetSettings", MainCommand::GetSample, "Ctrl+G", "&Get Sample"},
    {"GetHistoryData", MainCommand::GetHistory, "Ctrl+H", "Get &History Data"},
    {"ClearHistory", MainCommand::ClearHistory, "Ctrl+C", "&Clear History"},
    {"SynchronizeTime", MainCommand::SyncTime, "Ctrl+T", "Synchronize &Time"},
    {"Setup", MainCommand::Setup, "Ctrl+S", "&Setup"},
    {"ResetPulseAccs", MainCommand::ResetPulseAccumulators, "Ctrl+R", "&Reset Pulse Accumulators"},
    {"LoadLoggerImageFile", MainCommand::LoadLoggerImageFile, "", "Load Logger Image &File"},
};

}  // namespace

void frmMain::AddEntry(QMenu* menu, const QString& name, MainCommand command,
                       const QString& caption, const QString& shortcut) {
  auto* entry = Add(new QAction(this), name);
  SetCaption(name, caption);
  entry->setMenuRole(QAction::NoRole);
  if (!shortcut.isEmpty()) entry->setShortcut(QKeySequence(shortcut));
  connect(entry, &QAction::triggered, this, [this, command] { Q_EMIT CommandRequested(command); });
  menu->addAction(entry);
}

QMenu* frmMain::MakeActionMenu(const QString& prefix) {
  auto* menu = Add(new QMenu(this), prefix + u"Action"_s);
  SetCaption(menu->objectName(), u"&Action"_s);
  for (const EntryRow& entry : kActionEntries) {
    // The German set has no shortcuts.
    const QString shortcut = prefix == "mnu"_L1 ? QString::fromLatin1(entry.Shortcut) : QString();
    AddEntry(menu, prefix + QString::fromLatin1(entry.Name), entry.Command,
             QString::fromLatin1(entry.Caption), shortcut);
  }
  return menu;
}

void frmMain::MakeMenus() {
  auto* file = Add(new QMenu(this), u"mnuFile"_s);
  AddEntry(file, u"mnuExit"_s, MainCommand::Exit);
  menuBar()->addMenu(file);
  menuBar()->addMenu(MakeActionMenu(u"mnu"_s));
  menuBar()->addMenu(MakeActionMenu(u"imnu"_s));
  auto* dataMenu = Add(new QMenu(this), u"mnuData"_s);
  AddEntry(dataMenu, u"mnuArchive"_s, MainCommand::Archive);
  AddEntry(dataMenu, u"mnuTrend"_s, MainCommand::LiveTrend);
  menuBar()->addMenu(dataMenu);
  auto* help = Add(new QMenu(this), u"Help"_s);
  AddEntry(help, u"mnuLaunchHelp"_s, MainCommand::LaunchHelp);
  AddEntry(help, u"mnuLaunchDOHelp"_s, MainCommand::LaunchDoHelp);
  AddEntry(help, u"mnuAbout"_s, MainCommand::About);
  AddEntry(help, u"mnuFirmwareVersion"_s, MainCommand::FirmwareVersion);
  menuBar()->addMenu(help);
  SetCaption(u"mnuLaunchDOHelp"_s, u"&Dissolved Oxygen Sensor Help"_s);
  // Image import is for those who ask for it on the command line.
  SetVisible(u"mnuLoadLoggerImageFile"_s, false);
  SetVisible(u"imnuLoadLoggerImageFile"_s, false);
}

}  // namespace tessmar
