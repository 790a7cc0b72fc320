"""A page in headless Chromium, driven over the pipe of its developer tools."""

import fcntl
import json
import os
import subprocess
import tempfile
import time

FLAGS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-dev-shm-usage"]
SECONDS = 60  # for an answer


class Page:
    """Use it in a with statement. `complaints` are the console's messages and uncaught errors,
    `requests` the addresses that were asked for."""

    def __init__(self):
        self.complaints, self.requests = [], []
        self._answers, self._events, self._number, self._session = {}, [], 0, None

    def __enter__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="browser.", ignore_cleanup_errors=True)
        there, self._out = os.pipe()
        self._in, back = os.pipe()
        # The browser wants descriptors 3 and 4, which may be taken here.
        there, back = (fcntl.fcntl(each, fcntl.F_DUPFD_CLOEXEC, 10) for each in (there, back))
        command = ["chromium", *FLAGS, f"--user-data-dir={self._folder.name}",
                   "--remote-debugging-pipe", "about:blank"]
        self._process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            preexec_fn=lambda: (os.dup2(there, 3), os.dup2(back, 4)), pass_fds=(3, 4))
        os.close(there)
        os.close(back)
        self._rest = b""
        targets = self.call("Target.getTargets")["targetInfos"]
        target = next(each["targetId"] for each in targets if each["type"] == "page")
        self._session = self.call("Target.attachToTarget", targetId=target,
                                  flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(domain + ".enable")
        return self

    def __exit__(self, *_):
        self._session = None
        try:
            self.call("Browser.close")
        except (OSError, RuntimeError):
            self._process.kill()
        self._process.wait(SECONDS)
        self._folder.cleanup()

    def call(self, method, **parameters):
        self._number += 1
        number = self._number
        message = {"id": number, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        os.write(self._out, json.dumps(message).encode() + b"\0")
        self._wait(lambda: number in self._answers)
        answer = self._answers.pop(number)
        if "error" in answer:
            raise RuntimeError(f"{method}: {answer['error']}")
        return answer["result"]

    def _wait(self, condition):
        end = time.monotonic() + SECONDS
        while not condition():
            while b"\0" not in self._rest:
                read = os.read(self._in, 1 << 16)
                if not read or time.monotonic() > end:
                    raise RuntimeError("the browser does not answer")
                self._rest += read
            line, self._rest = self._rest.split(b"\0", 1)
            self._take(json.loads(line))

    def _take(self, message):
        if "id" in message:
            self._answers[message["id"]] = message
            return
        name, told = message["method"], message["params"]
        self._events.append(name)
        if name == "Network.requestWillBeSent":
            self.requests.append(told["request"]["url"])
        elif name == "Runtime.exceptionThrown":
            self.complaints.append(told["exceptionDetails"]["text"])
        elif name == "Runtime.consoleAPICalled":
            self.complaints.append(str(told["args"]))
        elif name == "Log.entryAdded":
            self.complaints.append(told["entry"]["text"])

    def open(self, address):
        self._events.clear()
        self.call("Page.navigate", url=address)
        self._wait(lambda: "Page.loadEventFired" in self._events)

    def value(self, expression):
        """What JavaScript makes of the expression; promises are awaited."""
        answer = self.call("Runtime.evaluate", expression=expression, awaitPromise=True,
                           returnByValue=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(f"{expression}: {answer['exceptionDetails']}")
        return answer["result"].get("value")

    def key(self, key, text=""):
        code = {"Enter": 13, "Escape": 27, "ArrowLeft": 37, "ArrowUp": 38, "ArrowRight": 39,
                "ArrowDown": 40, "Tab": 9}.get(key, ord(key[0]))
        more = {"key": key, "windowsVirtualKeyCode": code}
        self.call("Input.dispatchKeyEvent", type="keyDown", text=text, **more)
        self.call("Input.dispatchKeyEvent", type="keyUp", **more)

    def write(self, text):
        for character in text:
            self.key(character, character)

    def size(self, width, height, mobile=False):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=mobile)

    def colours(self, scheme):
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": scheme}])
