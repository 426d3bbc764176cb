// Asks what to export, and exports it with the progress in sight.
#pragma once

#include <QDialog>
#include <string>

#include "cinora/export/exporter.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace cinora::desktop {

class ExportDialog : public QDialog {
 public:
  /// `filmPath`: the film's file or the name it would get.
  ExportDialog(Host&, const std::string& filmPath, QWidget* parent);
  ExportRequest request() const;
  void accept() override;

 private:
  void fill(const std::string& filmPath);
  void layOut();
  void choosePreset();
  void browse();
  bool mayReplace(const ExportRequest&);

  Host& host_;
  QComboBox* preset_;
  QLabel *about_, *problem_;
  QRadioButton *whole_, *selection_;
  QLineEdit* path_;
};

/// Runs the export, answering to the user meanwhile. False when it was cancelled; throws Failure or WrongUsage.
bool exportWithProgress(Host&, const ExportRequest&, QWidget* parent);

}  // namespace cinora::desktop
