# SPDX-License-Identifier: GPL-3.0-or-later
"""screenreader_test.py CONSOLE: finds, reads and presses the console's controls over AT-SPI."""

import re
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

OPERABLE = {"push button", "check box", "radio button", "toggle button", "combo box", "spin button", "slider", "text",
            "page tab", "table", "menu item"}
# Parts of the toolkit's own widgets, which name themselves by their place or are reached by keys only.
TOOLKIT = {"Scroll Left", "Scroll Right"}
LONGEST_WAIT = 20  # s

# What each page offers, by role and name.
PAGES = {
    "Main": [("push button", "About")],
    "Visual Display": [("push button", name) for name in (
        "Local", "Remote 1", "Remote 2", "Fan 1", "Fan 2", "Fan 3", "Fan 4", "5V", "12V", "Vccp", "Vcc", "2.5V",
        "Easy Setup", "Setup Log...", "Fan Test Setup", "glitch test")] +
    [("spin button", "High limit"), ("spin button", "Low limit")],
    "Control ": [("push button", name) for name in (
        "Switch Access...", "Configure Fans...", "Configure Temps...", "Save Register Values...",
        "Recall Previous Setup...", "Make New Log", "Operating Point Demo", "Power/Current Parameters",
        "Power/Current Display")] +
    [("check box", name) for name in (
        "EnableTHERM", "Enable Alert", "ALERT on PWM2 pin", "ALERT on 2.5V pin", "Diode1 Enabled", "Diode2 Enabled",
        "Heater1 Enabled", "Heater2 Enabled")] +
    [("radio button", name) for name in (
        "Input on 5V pin", "Input on Tach4 pin", "Enable PROCHOT", "Alert on 2.5V pin", "Alert on PWM2 pin")] +
    [("panel", name) for name in ("THERM Setup", "SMBAlert Setup", "Sensors", "Heaters", "Set THERM# Read Time")],
}

failures = []


def check(condition, message):
    if not condition:
        failures.append(message)


def nodes(root):
    """All accessible objects under one, without the cells of tables, of which there may be thousands."""
    stack = [root]
    while stack:
        node = stack.pop()
        if node is None:
            continue
        yield node
        if node.get_role_name() != "table":
            stack.extend(node.get_child_at_index(i) for i in range(node.get_child_count()))


def find(root, role, name, showing=None):
    for node in nodes(root):
        if node.get_role_name() == role and re.fullmatch(name, node.get_name() or ""):
            if showing is None or node.get_state_set().contains(Atspi.StateType.SHOWING) == showing:
                return node
    return None


def wait(what, get):
    end = time.monotonic() + LONGEST_WAIT
    while time.monotonic() < end:
        try:
            found = get()
            if found:
                return found
        except gi.repository.GLib.Error:
            pass  # it went away meanwhile
        time.sleep(0.1)
    raise SystemExit(f"screenreader_test: {what}: not within {LONGEST_WAIT} s; {failures}")


def application():
    desktop = Atspi.get_desktop(0)
    found = [desktop.get_child_at_index(i) for i in range(desktop.get_child_count())]
    return next((one for one in found if one and one.get_name() == "KRX5580 console" and one.get_child_count()), None)


def press(node):
    Atspi.Action.do_action(node, 0)


def show_page(app, page):
    press(find(app, "page tab", re.escape(page)))
    wait(f"page {page}", lambda: find(app, *PAGES.get(page, [("table", "Registers")])[0], showing=True))


def run(app):
    for page, controls in PAGES.items():
        show_page(app, page)
        for role, name in controls:
            check(find(app, role, re.escape(name), showing=True), f"{page}: no {role} \"{name}\"")
    for node in nodes(app):
        if node.get_role_name() in OPERABLE and node.get_name() not in TOOLKIT:
            check(node.get_name(), f"{node.get_role_name()} without a name in \"{node.get_parent().get_name()}\"")

    show_page(app, "Visual Display")
    press(find(app, "push button", "Easy Setup", showing=True))
    wait("Local's temperature",
         lambda: re.fullmatch(r"\d\d\.\d\d C", find(app, "push button", "Local").get_description()))
    wait("its limits", lambda: find(app, "label", "Local 2[0-9]\\.[0-9]{2}C"))
    check(find(app, "chart", "Temperatures and fan speeds.*", showing=True), "the chart does not say what it shows")

    show_page(app, "Control ")
    press(find(app, "push button", "Configure Fans\\.\\.\\.", showing=True))
    dialog = wait("the fan dialog", lambda: find(app, "dialog", "Fan Configuration"))
    press(wait("its way out", lambda: find(dialog, "push button", "Close|Cancel|OK", showing=True)))
    wait("the fan dialog's end", lambda: not find(app, "dialog", "Fan Configuration"))


console = subprocess.Popen([sys.argv[1], "--medium", "simulated", "--connect", "printer-port"])
try:
    run(wait("the console's window", application))
finally:
    console.terminate()
    console.wait()
for failure in failures:
    print(failure, file=sys.stderr)
sys.exit(1 if failures else 0)
