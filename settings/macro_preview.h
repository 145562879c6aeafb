#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "settings/macro_check.h"
#include "twin/preview.h"

class QComboBox;
class QLabel;

namespace kelvo {

class DisplayPicture;

/// The model of the Terminal that listens now; null when nothing is known of it.
struct PresentTerminal {
  const sim::Terminal* terminal = nullptr;
  bool certain = false;  ///< its picture is what the Terminal shows
};

/// What a macro leaves on the display, reckoned by a simulated Terminal, and what it costs.
class MacroPreview : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    const DeviceFonts& fonts;
    std::function<int()> baudRate{};             ///< of the port, bit/s
    std::function<PresentTerminal()> present{};  ///< without it there is only the empty display
  };
  explicit MacroPreview(Services services, QWidget* parent = nullptr);

  /// Runs the text, if the preview is seen; otherwise when it is.
  void Show(const std::string& wire, const MacroContext& context);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  PresentTerminal Present() const;
  void Run();
  void ShowCosts(const PreviewResult& result, int rate);
  QString Doubts(const PreviewResult& result, const PresentTerminal& begun) const;

  const Services services_;
  const Preview preview_;
  std::string wire_;
  MacroContext context_;
  QComboBox* cboVorschauStart;
  DisplayPicture* picVorschau;
  QLabel* lblVorschauKosten;
  QLabel* lblVorschauHinweis;
};

}  // namespace kelvo
