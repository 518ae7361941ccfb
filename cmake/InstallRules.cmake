# SPDX-License-Identifier: Apache-2.0
# Installs the library, its headers and the files for find_package and pkg-config.
include(CMakePackageConfigHelpers)

set(QUORVELKIT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QuorvelKit)

install(TARGETS QuorvelKit EXPORT QuorvelKitTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(BUILD_SHARED_LIBS)
  # gdb loads a script automatically if its path below gdb's data folder, which is that of the prefix
  # /usr, is the path of the library.
  install(FILES QuorvelKit/JSON/gdb/printers.py
    DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}
    RENAME $<TARGET_FILE_NAME:QuorvelKit>-gdb.py)
endif()
install(EXPORT QuorvelKitTargets NAMESPACE QuorvelKit:: DESTINATION ${QUORVELKIT_CMAKE_DIR})

configure_package_config_file(cmake/QuorvelKitConfig.cmake.in QuorvelKitConfig.cmake
  INSTALL_DESTINATION ${QUORVELKIT_CMAKE_DIR})
write_basic_package_version_file(QuorvelKitConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/QuorvelKitConfig.cmake
  ${PROJECT_BINARY_DIR}/QuorvelKitConfigVersion.cmake
  DESTINATION ${QUORVELKIT_CMAKE_DIR})

# An application that links the static library also links the dependencies of the library.
if(BUILD_SHARED_LIBS)
  set(QUORVELKIT_PC_REQUIRES "Requires.private: libcurl liburiparser")
else()
  set(QUORVELKIT_PC_REQUIRES "Requires: libcurl liburiparser")
endif()
configure_file(cmake/quorvelkit.pc.in quorvelkit.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quorvelkit.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
