// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.12
import QtLocation 5.15
import QtPositioning 5.12

Item {
    id: root

    property string styleUrls
    property string tileHost

    Component {
        id: mapboxgl
        Plugin {
            name: "mapboxgl"
            PluginParameter { name: "mapboxgl.mapping.additional_style_urls"; value: root.styleUrls }
            PluginParameter { name: "mapboxgl.mapping.cache.memory"; value: true }
        }
    }

    Component {
        id: osm
        Plugin {
            name: "osm"
            PluginParameter { name: "osm.mapping.custom.host"; value: root.tileHost }
            PluginParameter { name: "osm.mapping.providersrepository.disabled"; value: true }
            PluginParameter { name: "osm.mapping.cache.disk.size"; value: 0 }
        }
    }

    Component {
        id: line
        MapPolyline {
            // The Mapbox GL engine draws lines itself, in its own style. Qt's own picture of them,
            // which is never shown then, takes a third of the time to add a line.
            backend: map.plugin.name === "mapboxgl" ? MapPolyline.OpenGLLineStrip
                                                    : MapPolyline.Software
        }
    }

    Component {
        id: marker
        MapQuickItem {
            property alias source: picture.source
            property alias pictureWidth: picture.width
            property alias pictureHeight: picture.height
            z: 1  // Above all lines.
            // Qt keeps pictures by their names, which are the same in every view.
            sourceItem: Image { id: picture; smooth: false; cache: false }
        }
    }

    Map {
        id: map
        objectName: "map"
        anchors.fill: parent
        color: "#ece9e2"
        gesture.acceptedGestures: MapGestureArea.PanGesture | MapGestureArea.FlickGesture
                                  | MapGestureArea.PinchGesture
    }

    // The plugin is given to the map when the scene is in its window already: the engine looks
    // for that window once.
    function start(name) {
        map.plugin = (name === "mapboxgl" ? mapboxgl : osm).createObject(root)
        if (name === "osm")
            map.activeMapType = map.supportedMapTypes[map.supportedMapTypes.length - 1]
        return map
    }

    function makeLine() { return line.createObject(map) }
    function makeMarker() { return marker.createObject(map) }
    function add(item) { map.addMapItem(item) }

    function clear() {
        var items = map.mapItems
        map.clearMapItems()
        for (var i = 0; i < items.length; ++i)
            items[i].destroy()
    }
}
