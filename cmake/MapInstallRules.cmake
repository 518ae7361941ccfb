# SPDX-License-Identifier: Apache-2.0
# Installs QuorvelKit::Map as the component Map of find_package(QuorvelKit).
install(TARGETS QuorvelMap EXPORT QuorvelKitMapTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT QuorvelKitMapTargets NAMESPACE QuorvelKit:: DESTINATION ${QUORVELKIT_CMAKE_DIR})
configure_file(cmake/QuorvelKitMapConfig.cmake.in QuorvelKitMapConfig.cmake @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/QuorvelKitMapConfig.cmake
  DESTINATION ${QUORVELKIT_CMAKE_DIR})
