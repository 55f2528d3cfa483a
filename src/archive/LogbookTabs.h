#pragma once

#include <QTabWidget>

namespace tessmar {

/// Pages of tables behind tabs. A tab that is chosen by its mnemonic, also the one that is shown
/// already, gives the focus to its page's table.
class LogbookTabs final : public QTabWidget {
 public:
  explicit LogbookTabs(QWidget* parent = nullptr);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tessmar
