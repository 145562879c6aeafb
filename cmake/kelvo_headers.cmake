# The headers that most sources share, parsed once for all targets of a kind. Each source still
# includes what it uses: -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON builds without these.
# What few include costs the others more than it saves: the compiler makes the template instances
# that a header asks for in each source anew. Without <QApplication>: with it, qApp is one everywhere.
set(kelvo_standard_headers
  <algorithm> <array> <chrono> <deque> <functional> <map> <memory> <optional> <span> <stdexcept>
  <string> <string_view> <utility> <variant> <vector>)
set(kelvo_toolkit_headers
  <QAction> <QCheckBox> <QComboBox> <QDialog> <QFormLayout> <QGridLayout> <QGroupBox>
  <QHBoxLayout> <QImage> <QKeyEvent> <QLabel> <QLineEdit> <QMainWindow> <QMessageBox> <QPainter>
  <QPlainTextEdit> <QProgressBar> <QPushButton> <QRadioButton> <QScrollArea> <QSpinBox>
  <QStatusBar> <QTabWidget> <QTableView> <QTimer> <QToolButton> <QVBoxLayout> <QWidget>)

# kelvo_precompiled(KIND HEADERS... [LINK libs...]): a target that others of its kind take its headers
# from, see kelvo_settings.
function(kelvo_precompiled kind)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  set(name kelvo${kind}_headers)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(${name} OBJECT ${source})
  kelvo_compiled(${name} "${kind}")
  target_link_libraries(${name} PRIVATE ${ARG_LINK})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

kelvo_precompiled("" HEADERS ${kelvo_standard_headers})
kelvo_precompiled(_core HEADERS ${kelvo_standard_headers} <QObject> <QString> <QTimer>
  LINK Qt6::Core)
kelvo_precompiled(_qt HEADERS ${kelvo_standard_headers} ${kelvo_toolkit_headers}
  LINK Qt6::Widgets)
