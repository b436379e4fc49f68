# Headers that most sources include are parsed once for all of them: those of the standard library, those of Qt on top
# of them, and for tests that of GoogleTest. A source includes what it uses all the same; NORVANE_PRECOMPILED=OFF builds
# without, and shows what was forgotten.
option(NORVANE_PRECOMPILED "Parse the headers of libraries once for all sources" ON)

set(norvane_standard_headers <algorithm> <charconv> <cmath> <cstdint> <functional> <map> <memory> <optional> <string>
                             <string_view> <unordered_map> <utility> <vector>)
set(norvane_qt_headers <QApplication> <QCheckBox> <QComboBox> <QDialog> <QEvent> <QFileDialog> <QHeaderView> <QLabel>
                       <QLineEdit> <QListWidget> <QMainWindow> <QMenuBar> <QMessageBox> <QMouseEvent> <QPainter>
                       <QPushButton> <QScreen> <QScrollBar> <QSettings> <QString> <QTableView> <QTimer> <QTreeWidget>
                       <QVBoxLayout> <QWidget>)

# A set of headers, in a target that others take them from.
function(norvane_header_set name)
  cmake_parse_arguments(PARSE_ARGV 1 SET "" "" "HEADERS;LIBRARIES")
  set(source ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "// Nothing but the headers.\n")
  add_library(${name} OBJECT ${source})
  target_link_libraries(${name} PRIVATE ${SET_LIBRARIES})
  target_precompile_headers(${name} PRIVATE ${SET_HEADERS})
endfunction()

# Gives a target the headers of a set. FOR is the kind of its sources: library or test.
function(norvane_precompile target)
  if(NOT NORVANE_PRECOMPILED)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 PRECOMPILE "" "FOR" "LIBRARIES")
  set(name precompiled_${PRECOMPILE_FOR})
  set(headers ${norvane_standard_headers})
  set(libraries "")
  if(PRECOMPILE_LIBRARIES MATCHES "platform_qt|Qt6::")
    string(APPEND name _qt)
    list(APPEND headers ${norvane_qt_headers})
    list(APPEND libraries Qt6::Widgets)
  endif()
  if(PRECOMPILE_FOR STREQUAL test)
    list(APPEND headers <gtest/gtest.h> <filesystem> <fstream> <random>)
    list(APPEND libraries GTest::gtest)
  endif()
  if(NOT TARGET ${name})
    norvane_header_set(${name} HEADERS ${headers} LIBRARIES ${libraries})
  endif()
  target_precompile_headers(${target} REUSE_FROM ${name})
  # As a library's, since the set is compiled as one.
  target_compile_options(${target} PRIVATE -fPIC)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # The first is for caches of compiled files. The others: GCC 12 suspects its own std::string, and says so where it no
    # longer sees that it came from a library's header.
    target_compile_options(${target} PRIVATE -fpch-preprocess -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow
                                             -Wno-stringop-overread)
  endif()
endfunction()
