# SPDX-License-Identifier: Apache-2.0
# Installs the libraries, the programs that were built, and the files for find_package and pkg-config.
# The components are: runtime, development, programs, documentation. No installed file contains the
# path of the prefix, so an installed tree can be moved.
include(CMakePackageConfigHelpers)

set(QUORVELKIT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QuorvelKit)
get_target_property(type QuorvelKit TYPE)
string(COMPARE EQUAL ${type} SHARED_LIBRARY QUORVELKIT_IS_SHARED)

# pkg-config finds the prefix from the folder of its file.
file(RELATIVE_PATH QUORVELKIT_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" QUORVELKIT_PC_PREFIX "${QUORVELKIT_PC_PREFIX}")

# Installs a library, its headers and its file for pkg-config. Further arguments are those of
# install(TARGETS).
function(quorvelkit_install_library target export pc)
  install(TARGETS ${target} EXPORT ${export}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    ${ARGN})
  install(EXPORT ${export} NAMESPACE QuorvelKit:: DESTINATION ${QUORVELKIT_CMAKE_DIR}
    COMPONENT development)
  configure_file(cmake/${pc}.pc.in ${pc}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${pc}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endfunction()

# An application that links a static library also links what that library needs.
set(QUORVELKIT_PC_REQUIRES "")
set(QUORVELKIT_PC_LIBS "")
set(QUORVELKIT_MAP_PC_REQUIRES "")
set(QUORVELKIT_MAP_QT_MODULES Widgets)
if(NOT QUORVELKIT_IS_SHARED)
  set(QUORVELKIT_PC_REQUIRES
    "libcurl >= ${QUORVELKIT_MINIMUM_CURL} liburiparser >= ${QUORVELKIT_MINIMUM_URIPARSER}")
  set(QUORVELKIT_PC_LIBS " -pthread")
  set(QUORVELKIT_MAP_QT_MODULES Widgets Network Sql Qml Quick QuickWidgets Positioning Location)
endif()
foreach(module IN LISTS QUORVELKIT_MAP_QT_MODULES)
  string(APPEND QUORVELKIT_MAP_PC_REQUIRES " Qt5${module} >= ${QUORVELKIT_MINIMUM_QT}")
endforeach()
list(JOIN QUORVELKIT_MAP_QT_MODULES " " QUORVELKIT_MAP_QT_MODULES)

quorvelkit_install_library(QuorvelKit QuorvelKitTargets quorvelkit
  FILE_SET event_loops DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
configure_file(cmake/QuorvelKitQtCoreConfig.cmake.in QuorvelKitQtCoreConfig.cmake @ONLY)
configure_package_config_file(cmake/QuorvelKitConfig.cmake.in QuorvelKitConfig.cmake
  INSTALL_DESTINATION ${QUORVELKIT_CMAKE_DIR})
write_basic_package_version_file(QuorvelKitSameMinorVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/QuorvelKitConfig.cmake
  ${PROJECT_BINARY_DIR}/QuorvelKitQtCoreConfig.cmake
  ${PROJECT_BINARY_DIR}/QuorvelKitSameMinorVersion.cmake
  cmake/QuorvelKitConfigVersion.cmake
  DESTINATION ${QUORVELKIT_CMAKE_DIR} COMPONENT development)
if(QUORVELKIT_IS_SHARED)
  # gdb loads a script automatically if its path below gdb's data folder, which is that of the prefix
  # /usr, is the path of the library.
  install(FILES QuorvelKit/JSON/gdb/printers.py
    DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}
    RENAME $<TARGET_FILE_NAME:QuorvelKit>-gdb.py COMPONENT development)
endif()

# The map is the component Map of find_package(QuorvelKit).
if(QUORVELKIT_HAS_MAP)
  quorvelkit_install_library(QuorvelMap QuorvelKitMapTargets quorvelkit-map)
  configure_file(cmake/QuorvelKitMapConfig.cmake.in QuorvelKitMapConfig.cmake @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/QuorvelKitMapConfig.cmake
    DESTINATION ${QUORVELKIT_CMAKE_DIR} COMPONENT development)
endif()

# The programs find the shared library by a path relative to their own.
foreach(program IN ITEMS quorvel quorvel-sandbox)
  if(TARGET ${program})
    file(RELATIVE_PATH libraries /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
    set_target_properties(${program} PROPERTIES INSTALL_RPATH $ORIGIN/${libraries})
    install(TARGETS ${program} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
    install(FILES docs/man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
      COMPONENT programs)
    install(FILES examples/quorvel/completion.bash RENAME ${program} COMPONENT programs
      DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  endif()
endforeach()

# quorvel starts this program, which needs the library of the map.
if(TARGET quorvel-picture)
  file(RELATIVE_PATH libraries /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
  set_target_properties(quorvel-picture PROPERTIES INSTALL_RPATH $ORIGIN/${libraries})
  install(TARGETS quorvel-picture DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
  install(FILES docs/man/quorvel-picture.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
    COMPONENT programs)
endif()

set(documentation ${CMAKE_INSTALL_DATAROOTDIR}/doc/quorvelkit)
install(FILES README.md CHANGELOG.md LICENSE SECURITY.md DESTINATION ${documentation}
  COMPONENT documentation)
install(DIRECTORY docs DESTINATION ${documentation} COMPONENT documentation
  PATTERN man EXCLUDE PATTERN reference EXCLUDE)
