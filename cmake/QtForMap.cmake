# SPDX-License-Identifier: Apache-2.0
# Finds Qt for QuorvelKit::Map and sets QUORVELKIT_HAS_MAP. Without Qt only the core is built. A parent
# project gets the map only if it sets QUORVELKIT_BUILD_MAP.
if(PROJECT_IS_TOP_LEVEL)
  set(default AUTO)
else()
  set(default OFF)
  # The parent project links the Qt modules of the map, so it must see their targets.
  set(CMAKE_FIND_PACKAGE_TARGETS_GLOBAL ON)
endif()
set(QUORVELKIT_BUILD_MAP ${default} CACHE STRING
    "Build QuorvelKit::Map: AUTO (where Qt is found), ON or OFF")
set_property(CACHE QUORVELKIT_BUILD_MAP PROPERTY STRINGS AUTO ON OFF)

set(QUORVELKIT_HAS_MAP OFF)
if(QUORVELKIT_BUILD_MAP)
  find_package(Qt5 ${QUORVELKIT_MINIMUM_QT} QUIET COMPONENTS Widgets Network Sql Qml Quick
               QuickWidgets Positioning Location QuickCompiler)
  if(Qt5_FOUND)
    set(QUORVELKIT_HAS_MAP ON)
  else()
    set(kind STATUS)
    if(NOT QUORVELKIT_BUILD_MAP STREQUAL "AUTO")
      set(kind FATAL_ERROR)
    endif()
    message(${kind} "QuorvelKit::Map is left out: Qt ${QUORVELKIT_MINIMUM_QT} with Quick and Location was not found "
                    "(scripts/setup --map installs it)")
  endif()
endif()
