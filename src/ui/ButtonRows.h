#pragma once

#include <vector>

class QLayout;
class QPushButton;

namespace tessmar {

/// Lays buttons out in one row, from the left; in two, the second for the `later` ones, where one
/// row would make the window wider than its screen.
QLayout* MakeButtonRows(const std::vector<QPushButton*>& first,
                        const std::vector<QPushButton*>& later);

}  // namespace tessmar
