#!/usr/bin/python3
"""The device console in a real headless Chromium, each case on a fresh device.

Usage: console_browser_test.py BIN_DIR CASE [SCREENSHOT.png]
Exits 77 (skipped, with the reason on standard output) only where Chromium, its driver or
Selenium is not installed, or where the device sandbox cannot be entered.
"""
import http.server
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

SKIPPED = 77
WAIT_SECONDS = 20  # generous: CI machines run the suite in parallel


def skip(reason):
    print("SKIPPED: " + reason)
    sys.exit(SKIPPED)


try:
    from selenium import webdriver
    from selenium.common.exceptions import TimeoutException
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.ui import Select, WebDriverWait
except ImportError as error:
    skip("python3-selenium is not installed (scripts/setup.sh installs it): %s" % error)

CHROMIUM = shutil.which("chromium")
CHROMEDRIVER = shutil.which("chromedriver")
if not CHROMIUM or not CHROMEDRIVER:
    skip("chromium and chromium-driver are not installed (scripts/setup.sh installs them)")


class Console:
    """orvo-menu serve on a new tv device inside its sandbox, and a browser on its page."""

    def __init__(self, bin_dir, missing_settings=()):
        self.bin_dir = bin_dir
        self.temporary = tempfile.mkdtemp(prefix="console-browser-")
        self.device = os.path.join(self.temporary, "device")
        self.tool("orvo-device", "create", self.device)
        for key in missing_settings:
            self.tool("vconftool", "unset", key)
        self.server = subprocess.Popen(
            [self.path("orvo-device"), "run", "--device", self.device, "--", self.path("orvo-menu"), "serve"],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.url = self.server.stdout.readline().strip()
        if not self.url.startswith("http://"):
            error = self.server.stderr.read()
            self.close()
            if "namespace" in error:
                skip("the device sandbox cannot be entered: " + error.strip())
            raise AssertionError("orvo-menu serve printed no URL: " + error)
        options = webdriver.ChromeOptions()
        options.binary_location = CHROMIUM
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                         "--window-size=1500,1350", "--force-device-scale-factor=1"):
            options.add_argument(argument)
        self.browser = webdriver.Chrome(service=Service(CHROMEDRIVER), options=options)
        self.browser.get(self.url)
        self.wait_text("menu-title", "Software Update")

    def path(self, tool):
        return os.path.join(self.bin_dir, tool)

    def tool(self, name, *arguments):
        environment = dict(os.environ, ORVO_DEVICE_DIR=getattr(self, "device", ""))
        result = subprocess.run([self.path(name), *arguments], capture_output=True, text=True, env=environment)
        assert result.returncode == 0, "%s %s: %s" % (name, arguments, result.stderr)
        return result.stdout

    def close(self):
        if getattr(self, "browser", None):
            self.browser.quit()
        if self.server.poll() is None:
            self.server.send_signal(signal.SIGINT)  # as Ctrl-C: the console ends cleanly
            status = self.server.wait(timeout=WAIT_SECONDS)
            assert status == 0, "orvo-menu serve ended with %d after Ctrl-C" % status
        shutil.rmtree(self.temporary, ignore_errors=True)

    def find(self, element_id):
        return self.browser.find_element(By.ID, element_id)

    def wait_until(self, condition, what):
        try:
            WebDriverWait(self.browser, WAIT_SECONDS).until(lambda _: condition())
        except TimeoutException:
            raise AssertionError("timed out waiting for " + what)

    def wait_text(self, element_id, text):
        self.wait_until(lambda: text in self.find(element_id).text,
                        "%r in #%s (it shows %r)" % (text, element_id, self.find(element_id).text))

    # Read in one script: the menu's rows are replaced at every render.
    def texts(self, selector):
        return self.browser.execute_script(
            "return [...document.querySelectorAll(arguments[0])].map((e) => e.textContent);", selector)

    def focused_title(self):
        titles = self.texts("#menu-items li.focused .item-title")
        return titles[0] if titles else ""

    def press(self, key):
        self.find("tv").send_keys(key)

    def wait_focus(self, title):
        self.wait_until(lambda: self.focused_title() == title, "focus on %r (it is on %r)" % (title, self.focused_title()))


def page_loads(console):
    assert console.texts("#menu-items li .item-title") == [
        "Update Now", "Update Channels", "Auto Update", "Update over Cellular Network", "OS Upgrade"]
    assert console.focused_title() == "Update Now"
    console.wait_text("menu-description", "Current version: 1302")
    console.wait_text("system-info", "T-KTM2DEUC-1302.5")
    console.wait_text("settings", "db/menu/support/softwareupdate/autoupdate")


def keys_move(console, screenshot=None):
    console.press(Keys.ARROW_DOWN)
    console.wait_focus("Update Channels")
    console.press(Keys.ARROW_DOWN)
    console.wait_focus("Auto Update")
    console.wait_text("focused-description", "Update your TV automatically")
    console.press(Keys.ARROW_UP)
    console.wait_focus("Update Channels")
    console.browser.find_element(By.CSS_SELECTOR, ".remote button[data-key=Down]").click()
    console.wait_focus("Auto Update")
    if screenshot:
        console.wait_until(lambda: console.browser.find_elements(By.CLASS_NAME, "log-line"), "log lines")
        console.browser.save_screenshot(screenshot)


def toggle_auto_update(console):
    key = "db/menu/support/softwareupdate/autoupdate"
    assert console.tool("vconftool", "get", key).strip() == key + ", value = 1 (Int32)"
    console.press(Keys.ARROW_DOWN)
    console.press(Keys.ARROW_DOWN)
    console.wait_focus("Auto Update")
    console.press(Keys.ENTER)
    console.wait_until(lambda: console.texts("li.focused .switch:not(.on)"), "the Auto Update switch to turn off")
    console.wait_text("status", "Auto Update: Off")
    assert console.tool("vconftool", "get", key).strip() == key + ", value = 0 (Int32)"


def software_version_fact(console):
    def set_fact(type_name, value):
        console.find("si-key").clear()
        console.find("si-key").send_keys("128")
        Select(console.find("si-type")).select_by_visible_text(type_name)
        console.find("si-value").clear()
        console.find("si-value").send_keys(value)
        console.find("si-apply").click()

    conf = os.path.join(console.device, "device.conf")
    before = open(conf).read()
    set_fact("int", "not a number")
    console.wait_text("device-message", '"not a number" is not a valid int value')
    assert open(conf).read() == before, "a refused change touched device.conf"
    set_fact("string", "T-KTM2DEUC-1410.2")
    console.wait_text("menu-description", "Current version: 1410")
    console.wait_text("focused-description", "Current version: 1410")
    assert "system-info.128 = string T-KTM2DEUC-1410.2\n" in open(conf).read()


def info_once(console):
    console.press("i")
    console.wait_text("menu-description", "SW Version: T-KTM2DEUC-1302.5")
    assert "Key Type: Debug" in console.find("menu-description").text
    console.press(Keys.ARROW_DOWN)  # moving does not read the branch again: the block stays
    console.wait_focus("Update Channels")
    assert console.find("menu-description").text.startswith("SW Version:")
    console.press("r")
    console.wait_text("menu-description", "View the software version of your TV")
    assert "SW Version:" not in console.find("menu-description").text


def switch_to_german(console):
    Select(console.find("language")).select_by_visible_text("de")
    console.wait_text("menu-title", "Software-Update")
    console.wait_text("menu-items", "Automatisches Update")
    console.wait_text("menu-language", "language de")


def log_record_appears(console):
    message = "console test record %d" % os.getpid()
    line = "%.9f\t%d\t%d\t4\tCONSOLE_TEST\t%s\n" % (time.time(), os.getpid(), os.getpid(), message)
    with open(os.path.join(console.device, "log", "main.log"), "a") as log:
        log.write(line)
    expected = "I/CONSOLE_TEST(%5d): %s" % (os.getpid(), message)  # dlogutil's brief pads the pid
    console.wait_until(lambda: expected in console.find("log-lines").text,
                       "%r in the log (log pane says %r)" % (expected, console.find("log-message").text))
    console.find("log-filter").send_keys("CONSOLE_TEST:S")
    console.wait_until(lambda: message not in console.find("log-lines").text, "the filter to hide the record")


def localisation_view(console):
    console.find("l10n-load").click()
    console.wait_text("l10n-table", "Automatisches Update")
    assert console.texts("#l10n-table tr:first-child th") == ["item", "field", "de", "en", "fr"]
    console.wait_text("l10n-widths", "title 560 px")
    # The profile's catalogues translate every text: nothing falls back to a raw id.
    assert not console.browser.find_elements(By.CSS_SELECTOR, "#l10n-table td.flag-raw")


def token_stays_home(console):
    """Another server of this machine, on another port, receives nothing of the token."""
    seen = []

    class Recorder(http.server.BaseHTTPRequestHandler):
        def do_GET(self):
            seen.append("%s %s" % (self.path, self.headers))
            self.send_response(200)
            self.send_header("Content-Type", "text/html")
            self.end_headers()
            self.wfile.write(b"<title>other</title>")

        def log_message(self, *arguments):
            pass

    other = http.server.HTTPServer(("127.0.0.1", 0), Recorder)
    threading.Thread(target=other.serve_forever, daemon=True).start()
    try:
        token = console.url.split("token=")[1]
        for path in ("/", "/api/menu"):
            console.browser.get("http://127.0.0.1:%d%s" % (other.server_port, path))
            console.wait_until(lambda: console.browser.title == "other", "the other server's page")
    finally:
        other.shutdown()
    assert len(seen) >= 2, seen
    assert not [request for request in seen if token in request], seen
    console.browser.get(console.url)  # the menu comes through the API: the page sent its token
    console.wait_text("menu-title", "Software Update")


CASES = {
    "page_loads": page_loads,
    "keys_move": keys_move,
    "toggle_auto_update": toggle_auto_update,
    "software_version_fact": software_version_fact,
    "info_once": info_once,
    "switch_to_german": switch_to_german,
    "log_record_appears": log_record_appears,
    "localisation_view": localisation_view,
    "token_stays_home": token_stays_home,
}


def main():
    if len(sys.argv) < 3 or sys.argv[2] not in CASES:
        print(__doc__ + "\nCases: " + " ".join(CASES), file=sys.stderr)
        return 2
    # For the screenshot a device without the submodel settings, so that the plug-in's warnings
    # about them fill the log pane.
    missing = ["db/menu/support/softwareupdate/" + key
               for key in ("selectedSubmodel", "flashedSubmodel", "isAnySubmodel")] if len(sys.argv) > 3 else []
    console = Console(sys.argv[1], missing)
    try:
        if len(sys.argv) > 3:
            CASES[sys.argv[2]](console, sys.argv[3])
        else:
            CASES[sys.argv[2]](console)
    finally:
        console.close()
    print("PASSED: " + sys.argv[2])
    return 0


if __name__ == "__main__":
    sys.exit(main())
