"""Starts the program's window, and talks to it as a browser would and as one should not."""
import contextlib
import http.client
import json
import pathlib
import re
import signal
import socket
import subprocess
import threading
import time
import urllib.error
import urllib.parse
import urllib.request

failures = []


def check(holds, what):
    if not holds:
        failures.append(what)
        print("FAILED:", what)


class Window:
    """`holdfast open` without a browser."""

    def __init__(self, program, drawing, *options, linger=60):
        self.process = subprocess.Popen([program, "open", str(drawing), "--no-browser", "--linger", str(linger), *options],
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().strip()
        found = re.fullmatch(r"http://127\.0\.0\.1:(\d+)/([0-9a-f]{32})/", self.address)
        if not found:
            raise RuntimeError(f"no address but {self.address!r} {self.process.stderr.read()!r}")
        self.port, self.word = int(found.group(1)), found.group(2)
        self.tab = ""  # in whose name it is asked; that of one without a name is as good as any

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.communicate()

    def interrupt(self):
        """Ctrl-C; what it says then, and its exit code."""
        self.process.send_signal(signal.SIGINT)
        out, err = self.process.communicate(timeout=20)
        return out + err, self.process.returncode

    def raw(self, request):
        """The status that a request gets, byte for byte as given; 0 for a connection that is closed."""
        with socket.create_connection(("127.0.0.1", self.port), timeout=10) as connection:
            connection.sendall(request)
            try:
                answer = connection.recv(64)
            except ConnectionResetError:
                return 0
        found = re.match(rb"HTTP/1\.1 (\d+)", answer)
        return int(found.group(1)) if found else 0

    def status(self, path=None, method="GET", body=b"", **headers):
        """Of a request that is right but for what is given here."""
        sent = {"Host": f"127.0.0.1:{self.port}", "Connection": "close"}
        if method == "POST":
            sent |= {"Origin": f"http://127.0.0.1:{self.port}", "Content-Type": "application/json",
                     "Content-Length": str(len(body))}
        sent |= {name.replace("_", "-"): value for name, value in headers.items()}
        lines = [f"{method} {path or f'/{self.word}/'} HTTP/1.1"]
        lines += [f"{name}: {value}" for name, value in sent.items() if value is not None]
        return self.raw("\r\n".join(lines).encode() + b"\r\n\r\n" + body)

    def flood(self, requests, tabs):
        """So many as fast as can be, from each of the tabs in turn: how many were answered, how many were too
        many, what those were told, and how long it took."""
        numbers, told, lock = iter(range(requests)), {200: [], 429: []}, threading.Lock()

        def ask():
            connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)
            while True:
                with lock:
                    number = next(numbers, None)
                if number is None:
                    return connection.close()
                connection.request("GET", f"/{self.word}/icon.svg", headers={"Holdfast-Tab": tabs[number % len(tabs)]})
                answer = connection.getresponse()
                told[answer.status].append(answer.read().decode())

        start, askers = time.time(), [threading.Thread(target=ask) for _ in range(8)]
        for asker in askers:
            asker.start()
        for asker in askers:
            asker.join()
        return len(told[200]), len(told[429]), (told[429] or [""])[0], time.time() - start

    def ask(self, name):
        with urllib.request.urlopen(f"{self.address}ask/{name}?tab={self.tab}", timeout=60) as answer:
            return json.load(answer)

    def do(self, name, text="", patience=30, **more):
        request = urllib.request.Request(
            f"{self.address}do/{name}", json.dumps({"text": text, **more}).encode(),
            {"Content-Type": "application/json", "Origin": f"http://127.0.0.1:{self.port}", "Holdfast-Tab": self.tab})
        with urllib.request.urlopen(request, timeout=patience) as answer:
            return json.load(answer)

    def asking(self, name):
        """Asks again and again over one connection, as a browser does: a function from a text to the answer's bytes."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)
        headers = {"Content-Type": "application/json", "Origin": f"http://127.0.0.1:{self.port}", "Holdfast-Tab": self.tab}

        def ask(text):
            connection.request("POST", f"/{self.word}/do/{name}", json.dumps({"text": text}).encode(), headers)
            return connection.getresponse().read()
        return ask

    def drop(self, name, content, **more):
        """A file on the page."""
        request = urllib.request.Request(
            f"{self.address}do/drop?{urllib.parse.urlencode({'name': name, **more})}", content,
            {"Content-Type": "application/octet-stream", "Origin": f"http://127.0.0.1:{self.port}", "Holdfast-Tab": self.tab})
        with urllib.request.urlopen(request, timeout=30) as answer:
            return json.load(answer)

    def copy(self, name):
        with urllib.request.urlopen(f"{self.address}copy/{name}?tab={self.tab}", timeout=30) as answer:
            text = answer.read()
            return text if name.endswith(".pdf") else text.decode()

    def save_as(self, form):
        """The bytes of the drawing in another form, and what is lost there; None for what is refused."""
        request = urllib.request.Request(
            f"{self.address}do/saveas", json.dumps({"text": form}).encode(),
            {"Content-Type": "application/json", "Origin": f"http://127.0.0.1:{self.port}", "Holdfast-Tab": self.tab})
        try:
            with urllib.request.urlopen(request, timeout=30) as answer:
                return answer.read(), json.loads(answer.headers["Holdfast-Notes"])
        except urllib.error.HTTPError as refusal:
            check(refusal.code == 400, f"a refusal says so: {refusal}")
            return None

    @contextlib.contextmanager
    def named(self, tab):
        """Asked in the name of another tab."""
        before, self.tab = self.tab, tab
        try:
            yield
        finally:
            self.tab = before

    def entity(self, name):
        return next((e for e in self.ask("state")["drawing"]["entities"] if e["id"] == name), None)


def copied(folder, drawing, name="bracket.json"):
    """A drawing of one's own, to be written to."""
    path = pathlib.Path(folder) / name
    path.write_bytes(pathlib.Path(drawing).read_bytes())
    return path


def outcome():
    print(f"{len(failures)} failures" if failures else "all is well")
    return 1 if failures else 0
