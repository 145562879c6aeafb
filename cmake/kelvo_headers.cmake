# The headers that most sources share, parsed once for all targets of a kind. Each source still
# includes what it uses: .ci/run builds the delivered ones without these.
set(kelvo_standard_headers
  <algorithm> <array> <charconv> <chrono> <cmath> <cstdint> <cstdlib> <deque> <filesystem> <fstream>
  <functional> <map> <memory> <optional> <random> <span> <stdexcept> <string> <string_view>
  <system_error> <utility> <variant> <vector>)
set(kelvo_toolkit_headers
  <QAction> <QApplication> <QCheckBox> <QClipboard> <QComboBox> <QDialog> <QFile> <QFormLayout>
  <QGridLayout> <QGroupBox> <QHBoxLayout> <QHeaderView> <QImage> <QInputDialog> <QKeyEvent> <QLabel>
  <QLineEdit> <QMainWindow> <QMenuBar> <QMessageBox> <QMimeData> <QPainter> <QPlainTextEdit>
  <QProgressBar> <QPushButton> <QRadioButton> <QScrollArea> <QScrollBar> <QShortcut>
  <QSignalBlocker> <QSlider> <QSpinBox> <QStatusBar> <QString> <QStringList> <QTabWidget>
  <QTableView> <QTemporaryDir> <QTimer> <QToolBar> <QToolButton> <QTreeWidget> <QVBoxLayout>
  <QWidget>)

# kelvo_precompiled(NAME HEADERS... [LINK libs...]): a target that others take its headers from, see
# kelvo_settings.
function(kelvo_precompiled name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(${name} OBJECT ${source})
  kelvo_compiled(${name})
  target_link_libraries(${name} PRIVATE ${ARG_LINK})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

kelvo_precompiled(kelvo_headers HEADERS ${kelvo_standard_headers})
kelvo_precompiled(kelvo_qt_headers HEADERS ${kelvo_standard_headers} ${kelvo_toolkit_headers}
  LINK Qt6::Widgets)
