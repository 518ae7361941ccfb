// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.12
import QtLocation 5.15
import QtPositioning 5.12

Item {
    id: root

    property string styleUrls
    property string tileHost
    property int linesMade: 0

    Component {
        id: mapboxgl
        Plugin {
            name: "mapboxgl"
            PluginParameter { name: "mapboxgl.mapping.additional_style_urls"; value: root.styleUrls }
            PluginParameter { name: "mapboxgl.mapping.cache.memory"; value: true }
            // Or else the plugin would use the one that it carries.
            PluginParameter { name: "mapboxgl.access_token"; value: "none" }
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
            property var ends: null
            // The Mapbox GL engine draws lines itself, in its own style. Qt's own picture of them,
            // which is never shown then, takes a third of the time to add a line.
            backend: map.plugin.name === "mapboxgl" ? MapPolyline.OpenGLLineStrip
                                                    : MapPolyline.Software
        }
    }

    // Joins and caps of the Mapbox GL engine's own line.
    Component {
        id: roundEnds
        MapParameter {
            property string layer
            property string lineJoin
            property string lineCap: "round"
            type: "layout"
        }
    }

    Map {
        id: map
        objectName: "map"
        anchors.fill: parent
        color: "#ece9e2"
        gesture.enabled: false  // The map view moves and zooms.
    }

    // The plugin is given to the map when the scene is in its window already: the engine looks
    // for that window once.
    function start(name) {
        map.plugin = (name === "mapboxgl" ? mapboxgl : osm).createObject(root)
        if (name === "osm")
            map.activeMapType = map.supportedMapTypes[map.supportedMapTypes.length - 1]
        return map
    }

    function makeLine() {
        return line.createObject(map, { objectName: "quorvel-line-" + ++linesMade })
    }

    function add(item) {
        map.addMapItem(item)
        if (map.plugin.name !== "mapboxgl")
            return
        item.ends = roundEnds.createObject(item, { layer: "QtLocation-" + item.objectName })
        map.addMapParameter(item.ends)
        // While the engine reads its style it takes no notice of new parameters, but of changes.
        item.ends.lineJoin = "round"
    }

    function clear() {
        var items = map.mapItems
        map.clearMapParameters()
        map.clearMapItems()
        for (var i = 0; i < items.length; ++i) {
            if (items[i].ends !== null)
                items[i].ends.destroy()
            items[i].destroy()
        }
    }
}
