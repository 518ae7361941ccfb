# SPDX-License-Identifier: Apache-2.0
# Finds Qt for QuorvelKit::Map and sets QUORVELKIT_HAS_MAP. Without Qt only the core is built.
set(QUORVELKIT_BUILD_MAP AUTO CACHE STRING
    "Build QuorvelKit::Map: AUTO (where Qt is found), ON or OFF")
set_property(CACHE QUORVELKIT_BUILD_MAP PROPERTY STRINGS AUTO ON OFF)

set(QUORVELKIT_HAS_MAP OFF)
if(QUORVELKIT_BUILD_MAP)
  find_package(Qt5 5.15 QUIET COMPONENTS Widgets Network Sql Qml Quick QuickWidgets Positioning
               Location QuickCompiler)
  if(Qt5_FOUND)
    set(QUORVELKIT_HAS_MAP ON)
  else()
    set(kind STATUS)
    if(NOT QUORVELKIT_BUILD_MAP STREQUAL "AUTO")
      set(kind FATAL_ERROR)
    endif()
    message(${kind} "QuorvelKit::Map is left out: Qt 5.15 with Quick and Location was not found "
                    "(scripts/setup --map installs it)")
  endif()
endif()
