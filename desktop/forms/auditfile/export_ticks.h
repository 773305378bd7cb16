#pragma once

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <functional>
#include <string_view>
#include <vector>

#include "auditfile/export_run.h"

namespace korvel::desktop {

/// The sections of the file to choose from, each with the count of its rows and a mark that appears when a run reaches
/// it, and how the file is divided. The export form and the wizard show the same one.
class ExportTicks final : public QFrame {
 public:
  explicit ExportTicks(QWidget* parent = nullptr);

  /// Shows the counts of a period, ticks and enables by its kind, and takes the marks away.
  void Show(const auditfile::ExportOffer& offer);
  /// As before the choice of a period.
  void Clear();
  /// The ticks as they stand; the folder is left blank.
  auditfile::ExportOptions Options() const;

  void HideMarks();
  /// Marks the section of that box.
  void Mark(std::string_view box);
  /// What a run tells its sections to, from whatever thread. The frame outlives the run.
  std::function<void(std::string_view)> Marker();

 private:
  struct Row;
  struct Controls {
    const Row* row;
    QCheckBox* tick;
    QLabel* count;    // null beside a box without rows of its own
    QLabel* picture;  // the same
  };
  static const Row kRows[];

  void AddRow(const Row& row, QGridLayout* grid);
  Controls* Find(std::string_view box);

  std::vector<Controls> controls_;
};

}  // namespace korvel::desktop
