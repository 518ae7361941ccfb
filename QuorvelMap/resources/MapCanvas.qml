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
            // Otherwise the plugin would use its built-in access token.
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
            property var layout: null
            // The Mapbox GL engine draws lines as part of its style and does not show Qt's drawing.
            // With OpenGLLineStrip, Qt does not project the coordinates when a line is added, which
            // saves a third of the time.
            backend: map.plugin.name === "mapboxgl" ? MapPolyline.OpenGLLineStrip
                                                    : MapPolyline.Software
        }
    }

    // The joins and caps of a line that the Mapbox GL engine draws.
    Component {
        id: roundLayout
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
        gesture.enabled: false  // MGLMapView handles all input.
    }

    // Call this when the scene is in a window: the engine looks for the window only once, when the
    // plugin is set.
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
        item.layout = roundLayout.createObject(item, { layer: "QtLocation-" + item.objectName })
        map.addMapParameter(item.layout)
        // While the engine loads its style, it ignores new parameters, but not changes.
        item.layout.lineJoin = "round"
    }

    function clear() {
        var items = map.mapItems
        map.clearMapParameters()
        map.clearMapItems()
        for (var i = 0; i < items.length; ++i) {
            if (items[i].layout !== null)
                items[i].layout.destroy()
            items[i].destroy()
        }
    }
}
