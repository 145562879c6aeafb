#pragma once

#include <QTreeWidget>
#include <vector>

#include "widgets/column_fit.h"

namespace kelvo {

/// A list of rows with a check box in front and texts in columns.
class TickList : public QTreeWidget {
 public:
  /// `widths` are those of the first columns, in characters.
  TickList(const QStringList& titles, const std::vector<int>& widths);

  int Rows() const { return topLevelItemCount(); }
  /// Adds a row at the end and returns its number (from 0).
  int Add(const QStringList& texts, bool ticked);
  /// Sets a cell, and its tool tip for where the column is too narrow for it.
  void SetText(int row, int column, const QString& text);
  /// The columns are as wide as their texts from now on, and these yield (ColumnFit).
  void FitColumns(std::vector<ColumnFit::Yielding> yielding);
  /// The first column names Terminals: there the name is cut and never the address.
  void KeepAddresses();
  bool Ticked(int row) const;
  bool AnyTicked() const;
  void Tick(int row, bool ticked);
  void TickAll(bool ticked);
  /// Whether the operator may change the ticks.
  void SetTickable(bool tickable);
  void ScrollTo(int row) { scrollToItem(topLevelItem(row)); }
  /// Writes a row in a colour, of which a dark ground shows a lighter shade; without a valid one in
  /// the theme's own.
  void Colour(int row, const QColor& colour);
};

}  // namespace kelvo
