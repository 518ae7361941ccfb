#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Uses the page of the sandbox as people do, in a headless browser.

    page_test.py chromium|firefox [FOLDER]     the sandbox is at $QUORVEL_BACKEND; FOLDER gets pictures
"""
import os
import pathlib
import re
import sys
import tempfile

from browsers import Chromium, Firefox, wait_for

URL = os.environ["QUORVEL_BACKEND"] + "/"
TAB, ENTER, DOWN, ESCAPE = "\ue004", "\ue007", "\ue015", "\ue00c"
SECRETS = ("kvm40972", "D41F06A3-92BE-4C57-AB08-6E1D3C5F7092")


def text(browser, selector):
    return browser.run(f"return document.querySelector({selector!r})?.textContent ?? ''")


def count(browser, selector):
    return browser.run(f"return document.querySelectorAll({selector!r}).length")


def wait_for_route(browser, before=""):
    """Returns the directions once they differ from those before."""
    return wait_for(lambda: count(browser, "#directions li") > 1 and text(browser, "#directions") != before and
                    text(browser, "#directions"), text(browser, "#status"))


def check_map(browser):
    wait_for(lambda: browser.run("return document.querySelector('#map canvas')?.dataset.labels > 3"), "names")
    colors = browser.run("""
        const canvas = document.querySelector('#map canvas');
        const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
        return new Set(new Uint32Array(data.buffer)).size;""")
    assert colors > 50, f"the map has {colors} colors"
    assert "invented town" in text(browser, "#map")


def check_keyboard(browser):
    """Finds two places and the route between them without a pointer."""
    browser.run("document.getElementById('from').focus()")
    for place, options in (("Causeway", "#from-list li"), ("Saltings Road", "#to-list li")):
        browser.press(*place)
        wait_for(lambda: count(browser, options) > 0, "suggestions")
        browser.press(DOWN)
        assert count(browser, '[role="option"][aria-selected="true"]') == 1
        browser.press(ENTER)
        wait_for(lambda: count(browser, options) == 0 and count(browser, ".end"), "a chosen place")
        browser.press(TAB)
    directions = wait_for_route(browser)
    assert "Arrive at your destination" in directions, directions
    assert re.fullmatch(r"[0-9.]+ mi, \d+ min", text(browser, "#status")), text(browser, "#status")
    assert browser.run("return document.getElementById('from').value").startswith("Causeway Road")
    # Enter sets a point in the center of the map.
    browser.run("document.getElementById('map').focus()")
    browser.press(ENTER)
    wait_for(lambda: "destination" in text(browser, "#status"), "a new start")


def check_clicks(browser):
    before = text(browser, "#directions")
    browser.run("document.querySelector('[type=reset]').click(); document.getElementById('map').scrollIntoView()")
    x, y, width, height = browser.run("""
        const box = document.getElementById('map').getBoundingClientRect();
        return [box.x, box.y, box.width, box.height].map(Math.round);""")
    browser.click(x + width // 3, y + height // 3)
    wait_for(lambda: count(browser, ".end") == 1, "the first point")
    browser.click(x + 2 * width // 3, y + height // 2)
    wait_for_route(browser, before)


def check_exchanges(browser):
    browser.run("for (const one of document.querySelectorAll('#exchange-list details')) one.open = true")
    shown = wait_for(lambda: count(browser, "#exchange-list pre") > 6 and text(browser, "#exchange-list"), "exchanges")
    for part in ("POST /v1/users/login HTTP/1.1", "secret-key: D41F\u2026", '"password":"', "user-token: ",
                 "GET /api/v1/suggest?text=Causeway", "GET /v4/route?startLat=", "HTTP/1.1 200", '"points":['):
        assert part in shown, f"{part} is not among the exchanges: {shown[-3000:]}"
    for secret in SECRETS + ("Mozilla",):
        assert secret not in shown, secret


def check_errors(browser):
    """A text that is no place gives a message, not an error in the console."""
    browser.run("document.querySelector('[type=reset]').click(); document.getElementById('from').focus()")
    browser.press(*"Atlantis", ESCAPE, ENTER)
    wait_for(lambda: "There is no place" in text(browser, "#status.error"), "a message")


def main():
    browsers = {"chromium": Chromium, "firefox": Firefox}
    pictures = sys.argv[2] if len(sys.argv) > 2 else None
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        browser = browsers[sys.argv[1]](pathlib.Path(folder))
        for name, width, height in (("desktop", 1400, 850), ("phone", 400, 800)):
            browser.resize(width, height)
            browser.open(URL)
            for check in (check_map, check_keyboard, check_clicks, check_exchanges):
                check(browser)
                if pictures:
                    browser.picture(f"{pictures}/{sys.argv[1]}-{name}-{check.__name__}.png")
            overflow = browser.run("return document.documentElement.scrollWidth - innerWidth")
            assert overflow <= 0, f"the page is {overflow} pixels too wide for a {name}"
            check_errors(browser)
        messages = browser.messages()
        browser.close()
        assert not messages, messages


main()
