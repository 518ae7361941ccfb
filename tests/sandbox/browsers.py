# SPDX-License-Identifier: Apache-2.0
"""Drives a headless browser by WebDriver commands: Chromium through chromedriver, Firefox directly."""
import base64
import json
import os
import pathlib
import re
import socket
import subprocess
import time
import urllib.error
import urllib.request

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"
TIMEOUT = 200


def wait_for(condition, what):
    """Returns the first value of `condition` that is true."""
    end = time.monotonic() + TIMEOUT
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"waited in vain: {what}")


class Browser:
    """Subclasses have command(), which sends a WebDriver command, and messages()."""

    def open(self, url):
        self.command("WebDriver:Navigate", "POST url", {"url": url})

    def run(self, script):
        """Runs the body of a JavaScript function. Returns its value."""
        return self.command("WebDriver:ExecuteScript", "POST execute/sync", {"script": script, "args": []})

    def press(self, *keys):
        """Presses and releases keys, one after the other: characters or their WebDriver codes."""
        actions = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.perform({"type": "key", "id": "keys", "actions": actions})

    def click(self, x, y):
        """Clicks a position in the window, in CSS pixels."""
        self.perform({"type": "pointer", "id": "mouse", "actions": [
            {"type": "pointerMove", "x": x, "y": y, "duration": 0},
            {"type": "pointerDown", "button": 0}, {"type": "pointerUp", "button": 0}]})

    def perform(self, source):
        self.command("WebDriver:PerformActions", "POST actions", {"actions": [source]})

    def picture(self, path):
        data = self.command("WebDriver:TakeScreenshot", "GET screenshot", {"full": False})
        pathlib.Path(path).write_bytes(base64.b64decode(data))


class Chromium(Browser):
    def __init__(self, folder):
        self.log = open(folder / "chromedriver.log", "w", encoding="utf-8")
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                       stderr=self.log, text=True)
        for line in self.driver.stdout:
            if port := re.search(r"on port (\d+)\.", line):
                break
        else:
            raise AssertionError("chromedriver did not start")
        self.url = f"http://127.0.0.1:{port[1]}/session"
        arguments = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     f"--user-data-dir={folder}/chromium"]
        session = self.send("POST", "", {"capabilities": {"alwaysMatch": {
            "goog:chromeOptions": {"args": arguments}, "goog:loggingPrefs": {"browser": "ALL"}}}})
        self.url += "/" + session["sessionId"]

    def resize(self, width, height):
        phone = width < 500  # The window itself cannot be as narrow.
        self.send("POST", "/goog/cdp/execute", {"cmd": "Emulation.setDeviceMetricsOverride", "params": {
            "width": width, "height": height, "deviceScaleFactor": 2 if phone else 1, "mobile": phone}})

    def send(self, method, path, body):
        data = json.dumps(body).encode() if method == "POST" else None
        request = urllib.request.Request(self.url + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.urlopen(request, timeout=TIMEOUT) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise AssertionError(error.read().decode()) from None

    def command(self, _, command, parameters):
        method, path = command.split()
        return self.send(method, "/" + path, parameters)

    def messages(self):
        """Returns what was written to the console."""
        return [entry["message"] for entry in self.send("POST", "/se/log", {"type": "browser"})]

    def close(self):
        self.send("DELETE", "", None)
        self.driver.terminate()
        self.driver.wait()
        self.log.close()


class Firefox(Browser):
    SETTINGS = {"marionette.port": 0, "devtools.console.stdout.content": True,
                "browser.dom.window.dump.enabled": True, "browser.shell.checkDefaultBrowser": False,
                "datareporting.policy.dataSubmissionEnabled": False, "app.normandy.enabled": False,
                "browser.region.update.enabled": False, "extensions.update.enabled": False,
                "network.captive-portal-service.enabled": False, "services.settings.server": "http://127.0.0.1:9",
                "network.connectivity-service.enabled": False, "app.update.enabled": False,
                "browser.aboutwelcome.enabled": False, "toolkit.telemetry.enabled": False}

    def __init__(self, folder):
        profile = folder / "firefox"
        profile.mkdir()
        (profile / "user.js").write_text("".join(
            f"user_pref({json.dumps(name)}, {json.dumps(value)});\n" for name, value in self.SETTINGS.items()))
        self.log_path = folder / "firefox.log"
        self.log = open(self.log_path, "w", encoding="utf-8")
        self.process = subprocess.Popen(
            ["firefox-esr", "--marionette", "--headless", "--no-remote", "--profile", profile],
            stdout=self.log, stderr=subprocess.STDOUT, env=os.environ | {"HOME": str(folder), "MOZ_CRASHREPORTER_DISABLE": "1"})
        # Firefox writes its port into the profile.
        port = wait_for(lambda: self.port(profile / "MarionetteActivePort"), "the start of Firefox")
        self.socket = socket.create_connection(("127.0.0.1", int(port)), TIMEOUT)
        self.number = 0
        self.receive()
        self.command("WebDriver:NewSession", "", {})

    def resize(self, width, height):
        """The window keeps a width of 500 pixels at least."""
        self.command("WebDriver:SetWindowRect", "", {"width": width, "height": height})
        # The frame of the window is a part of its size.
        missing = self.run(f"return [{width} - innerWidth, {height} - innerHeight]")
        self.command("WebDriver:SetWindowRect", "", {"width": width + missing[0], "height": height + missing[1]})

    def port(self, file):
        assert self.process.poll() is None, self.log_path.read_text()
        return file.read_text().strip() if file.exists() else ""

    def receive(self):
        size = b""
        while not size.endswith(b":"):
            size += self.socket.recv(1)
        text = b""
        while len(text) < int(size[:-1]):
            text += self.socket.recv(int(size[:-1]) - len(text))
        return json.loads(text)

    def command(self, name, _, parameters):
        self.number += 1
        message = json.dumps([0, self.number, name, parameters]).encode()
        self.socket.sendall(f"{len(message)}:".encode() + message)
        _, _, error, result = self.receive()
        assert error is None, error
        return result.get("value") if isinstance(result, dict) else result

    def messages(self):
        """Returns what the page wrote to the console (Firefox itself writes texts without quotes), and the
        errors of its scripts."""
        lines = self.log_path.read_text(errors="replace").splitlines()
        return [line for line in lines
                if re.match(r'console\.(error|warn): "|JavaScript (error|warning): http', line)]

    def close(self):
        self.command("Marionette:Quit", "", {"flags": ["eForceQuit"]})
        self.socket.close()
        self.process.wait()
        self.log.close()
