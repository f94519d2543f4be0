#!/usr/bin/python3
"""Flashes a board the way a screen reader's user does, through the accessibility tree alone.

Starts tarnwick with a simulated ESP32 plugged in, finds its Flash button on the AT-SPI bus by
role and name, presses it through the button's action, listens for the status line's name
changes while the board is flashed and reads the result from the status line's text. Nothing is
looked up by position or in the program's own terms: only what a screen reader sees.

Run inside tests/support/accessibility-session.sh, with the system's Python and pyatspi:
    /usr/bin/python3 flash_through_the_tree.py PATH/TO/tarnwick
"""

import os
import subprocess
import sys
import time

try:
    import pyatspi
    from gi.repository import GLib
except ImportError as missing:
    print(f"SKIPPED: pyatspi is missing ({missing}); scripts/setup.sh installs python3-pyatspi",
          file=sys.stderr)
    sys.exit(77)

# Seconds allowed for the window to appear on the bus, and for the run to end.
APPEAR_SECONDS = 60
RUN_SECONDS = 180


def fail(message):
    print(f"FAIL: {message}", file=sys.stderr)
    sys.exit(1)


def wait_for(what, find, seconds):
    """The first non-empty answer of find(), asked until the time is up."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        try:
            found = find()
        except GLib.Error:
            # The program is still putting its objects on the bus.
            found = None
        if found:
            return found
        time.sleep(0.1)
    fail(f"no {what} within {seconds} s")


def application(pid):
    desktop = pyatspi.Registry.getDesktop(0)
    for app in desktop:
        if app is not None and app.get_process_id() == pid:
            return app
    return None


def descendant(root, predicate):
    return pyatspi.findDescendant(root, predicate, breadth_first=True)


def main():
    if len(sys.argv) != 2:
        fail("usage: flash_through_the_tree.py PATH/TO/tarnwick")
    # The names looked for are the English ones.
    environment = dict(os.environ, LANGUAGE="en", LC_ALL="C.UTF-8")
    program = subprocess.Popen([sys.argv[1], "--simulated-board=esp32"], env=environment)
    try:
        app = wait_for("Tarnwick on the accessibility bus", lambda: application(program.pid),
                       APPEAR_SECONDS)
        flash = wait_for(
            "enabled push button named Flash",
            lambda: descendant(app, lambda node: node.getRole() == pyatspi.ROLE_PUSH_BUTTON
                               and node.name == "Flash"
                               and node.getState().contains(pyatspi.STATE_ENABLED)),
            APPEAR_SECONDS)
        status_bar = wait_for(
            "status bar",
            lambda: descendant(app, lambda node: node.getRole() == pyatspi.ROLE_STATUS_BAR),
            APPEAR_SECONDS)
        # The status line's text is the first label of the status bar; the counters follow.
        status = next((child for child in status_bar if child.getRole() == pyatspi.ROLE_LABEL),
                      None)
        if status is None:
            fail("the status bar holds no label")
        if not status.name:
            fail("the status line has no name before the run")

        heard = []

        def name_changed(event):
            # Qt's event names the object, not the new name: it is read as the event is
            # handled, so a quick run may be heard with a stage twice and another not at all.
            if event.source == status:
                heard.append(event.source.name)

        def ended():
            return any(name.startswith(("Last flash succeeded", "Flashing failed"))
                       for name in heard)

        def check():
            if ended() or program.poll() is not None:
                pyatspi.Registry.stop()
                return False
            return True

        def give_up():
            pyatspi.Registry.stop()
            return False

        pyatspi.Registry.registerEventListener(name_changed,
                                               "object:property-change:accessible-name")
        actions = flash.queryAction()
        press = next((i for i in range(actions.nActions) if actions.getName(i) == "Press"), 0)
        if not actions.doAction(press):
            fail("the Flash button refused its action")
        GLib.timeout_add(100, check)
        GLib.timeout_add_seconds(RUN_SECONDS, give_up)
        pyatspi.Registry.start()
        pyatspi.Registry.deregisterEventListener(name_changed,
                                                 "object:property-change:accessible-name")

        if program.poll() is not None:
            fail(f"tarnwick ended during the run (exit status {program.returncode})")
        if not ended():
            fail(f"the run did not end within {RUN_SECONDS} s; heard: {heard}")
        # Which stages are heard depends on how quickly they are read (see name_changed); the
        # in-process tests check each one. Here: the run was heard under way, not only its end.
        stages = ("Connecting", "Writing ", "Verifying ", "Restarting ")
        if not any(name.startswith(stages) for name in heard):
            fail(f"no stage of the run was announced; heard: {heard}")
        text = status.queryText()
        result = text.getText(0, text.characterCount)
        if not result.startswith("Last flash succeeded · ESP32 · "):
            fail(f"the status line reads {result!r}; heard: {heard}")
        print(f"heard: {' | '.join(heard)}")
        print(f"status line: {result}")
    finally:
        program.terminate()
        try:
            program.wait(timeout=10)
        except subprocess.TimeoutExpired:
            program.kill()
            program.wait()


if __name__ == "__main__":
    main()
