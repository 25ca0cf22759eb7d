#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
"""A file server that does one thing wrong, or right in an unusual way.

usage: fault_server.py LOG

Listens on a free port of 127.0.0.1 and prints the number. The first segment of a request's path names what happens
to it: see the functions below, "_" in their names is "-" in paths. Every request adds lines of JSON to LOG: one when
its head has been read, one when its connection ends, with the bytes of the body that were read until then.
"""
import hashlib
import json
import socket
import struct
import sys
import threading

PIECE = 65536


class Request:
    """One connection, its request's head, and what has been read of its body."""

    def __init__(self, connection, log):
        self.connection = connection
        self.log = log
        self.rest = b""
        self.digest = hashlib.sha256()
        self.body_bytes = 0

    def read_head(self):
        while b"\r\n\r\n" not in self.rest:
            data = self.connection.recv(PIECE)
            if not data:
                raise ConnectionError("no head")
            self.rest += data
        head, self.rest = self.rest.split(b"\r\n\r\n", 1)
        lines = head.decode("latin-1").split("\r\n")
        self.method, self.path, _ = lines[0].split(" ", 2)
        self.headers = dict((k.lower(), v) for k, v in (line.split(": ", 1) for line in lines[1:]))
        self.host = self.headers.get("host", "")
        self.length = int(self.headers.get("content-length", "0"))
        if "://" in self.path:  # as a proxy is asked
            self.path = "/" + self.path.split("/", 3)[3]
        self.fault = self.path.split("/")[1]
        self.name = self.path.rsplit("/", 1)[-1]
        self.link = f"http://{self.host}/{self.fault}/token/{self.name}"
        self.log.write({"event": "head", "method": self.method, "path": self.path, "headers": self.headers})

    def read(self, limit=None):
        """Reads the body, or so many more bytes of it."""
        wanted = self.length if limit is None else min(self.length, self.body_bytes + limit)
        while self.body_bytes < wanted:
            data = self.rest or self.connection.recv(PIECE)
            self.rest = b""
            if not data:
                raise ConnectionError("the body is cut")
            self.digest.update(data)
            self.body_bytes += len(data)

    def send(self, data):
        self.connection.sendall(data if isinstance(data, bytes) else data.encode())

    def answer(self, body, status="200 OK", headers=""):
        body = body if isinstance(body, bytes) else body.encode()
        self.send(f"HTTP/1.1 {status}\r\nContent-Length: {len(body)}\r\n{headers}\r\n".encode() + body)

    def go_on(self):
        """Says that the body is wanted when the client waits to hear it."""
        if "expect" in self.headers:
            self.send("HTTP/1.1 100 Continue\r\n\r\n")

    def take(self):
        self.go_on()
        self.read()

    def reset(self):
        """Makes closing the connection send a reset."""
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))

    def wait_for_client(self):
        """Reads nothing and says nothing until the client hangs up."""
        while not self.server.stopped.wait(0.02):
            try:
                if self.connection.recv(1, socket.MSG_PEEK | socket.MSG_DONTWAIT) == b"":
                    return
            except BlockingIOError:
                pass


# What can happen to a request. A function returns when the connection is to be closed.


def good(r):
    r.take()
    r.answer(r.link + "\n", "201 Created")


def redirect(r, status, location="http://{host}/target/"):
    r.take()
    location = location.format(host=r.host, other=r.server.other_port)
    r.answer("moved", f"{status} Moved", f"Location: {location}\r\n")


def redirect_early(r):
    r.answer("moved", "307 Moved", f"Location: http://{r.host}/target/\r\n")
    r.wait_for_client()


def redirect_without_location(r):
    r.take()
    r.answer("moved", "302 Found")


def redirect_before_endless_answer(r):
    r.take()
    r.send(f"HTTP/1.1 302 Found\r\nLocation: http://{r.host}/target/\r\n\r\n")
    while True:
        r.send(b"x" * 1000)


def padded(r, size):
    r.take()
    r.answer(r.link + "\n" * (size - len(r.link)))


def endless(r):
    r.take()
    r.send("HTTP/1.1 200 OK\r\n\r\n")
    while True:
        r.send(b"x" * 1000)


def endless_chunks(r):
    r.take()
    r.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n")
    while True:
        r.send(b"3e8\r\n" + b"x" * 1000 + b"\r\n")


def endless_head(r):
    r.take()
    r.send("HTTP/1.1 200 OK\r\n")
    while True:
        r.send(b"X-Filler: " + b"x" * 1000 + b"\r\n")


def endless_1xx(r):
    r.take()
    while True:
        r.send("HTTP/1.1 103 Early Hints\r\nLink: </a>\r\n\r\n")


def body(r, text):
    r.take()
    r.answer(text.format(host=r.host, fault=r.fault, name=r.name) if isinstance(text, str) else text)


def chunked(r):
    r.take()
    r.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n")
    for character in r.link.encode():
        r.send(b"1\r\n" + bytes([character]) + b"\r\n")
    r.send("0\r\n\r\n")


def until_close(r):
    r.take()
    r.send("HTTP/1.0 200 OK\r\n\r\n" + r.link)


def status(r, text):
    r.take()
    r.answer("sorry", text)


def early_413(r):
    r.answer("too large", "413 Content Too Large", "Connection: close\r\n")
    r.connection.shutdown(socket.SHUT_WR)
    while r.connection.recv(PIECE):
        pass


def reset_413(r):
    r.answer("too large", "413 Content Too Large", "Connection: close\r\n")
    # Closing with unread data in the buffer makes the system send a reset.


def cut_413(r):
    r.take()  # a client that is still sending when the reset comes may never read the answer
    r.send("HTTP/1.1 413 Content Too Large\r\nContent-Length: 1000\r\n\r\ntoo large")
    r.reset()


def ignores_expect(r):
    r.read()
    r.answer(r.link)


def refuses_expect(r):
    if "expect" in r.headers:
        r.answer("no", "417 Expectation Failed", "Connection: close\r\n")
    else:
        good(r)


def interim(r):
    r.go_on()
    r.send("HTTP/1.1 102 Processing\r\n\r\n")
    r.read()
    r.send("HTTP/1.1 103 Early Hints\r\nLocation: http://" + r.host + "/target/\r\n\r\n")
    r.answer(r.link)


def only_100(r):
    r.send("HTTP/1.1 100 Continue\r\n\r\n")
    r.read()


def switching(r):
    r.take()
    r.send("HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\nConnection: Upgrade\r\n\r\n" + r.link)


def early_200(r):
    """Is content without having read the body, and hangs up."""
    r.answer(r.link, "200 OK", "Connection: close\r\n")


def early_200_silent(r):
    r.answer(r.link)
    r.wait_for_client()


def early_close(r):
    pass


def close_after_body(r):
    r.take()


def cut_answer(r):
    r.take()
    r.send(f"HTTP/1.1 200 OK\r\nContent-Length: {len(r.link) + 50}\r\n\r\n{r.link}")


def cut_head(r):
    r.take()
    r.send("HTTP/1.1 200 OK\r\nContent-Le")


def reset_in_body(r):
    r.go_on()
    r.read(r.length // 2)
    r.reset()


def reset_at_once(r):
    r.reset()


def silent(r):
    r.take()
    r.wait_for_client()


def deaf(r):
    """Reads nothing of the body."""
    r.go_on()
    r.wait_for_client()


def silent_in_answer(r):
    r.take()
    r.send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhttp://")
    r.wait_for_client()


def dripping(r):
    """Never silent, never done."""
    r.take()
    r.send("HTTP/1.1 200 OK\r\nContent-Length: 8000\r\n\r\n")
    while not r.server.stopped.wait(0.02):
        r.send(b"x")


def gate(r):
    """Reads a part of the body, and the rest only after a request for /release."""
    r.go_on()
    r.read(262144)
    r.log.write({"event": "waiting", "path": r.path})
    r.server.released.wait(30)
    r.read()
    r.answer(r.link)


def release(r):
    r.server.released.set()
    r.answer("released")


FAULTS = {
    "redirect-relative": lambda r: redirect(r, 302, "/target/"),
    "redirect-other-port": lambda r: redirect(r, 307, "http://127.0.0.1:{other}/target/"),
    "answer-8192": lambda r: padded(r, 8192),
    "answer-8193": lambda r: padded(r, 8193),
    "two-lines": lambda r: body(r, "http://{host}/{fault}/a/b\nhttp://{host}/{fault}/c/d\n"),
    "invalid-utf8": lambda r: body(r, r.link.encode() + b"\xff"),
    "wrong-host": lambda r: body(r, "http://other.example/{fault}/a/b"),
    "wrong-port": lambda r: body(r, "http://127.0.0.1:1/{fault}/a/b"),
    "wrong-scheme": lambda r: body(r, "https://{host}/{fault}/a/b"),
    "outside": lambda r: body(r, "http://{host}/elsewhere/a/b"),
    "query": lambda r: body(r, "http://{host}/{fault}/a/b?c"),
    "fragment": lambda r: body(r, "http://{host}/{fault}/a/b#c"),
    "empty": lambda r: body(r, ""),
    "html": lambda r: body(r, "<html><body>Thank you!</body></html>"),
    "status-204": lambda r: (r.take(), r.send("HTTP/1.1 204 No Content\r\n\r\n")),
    "status-304": lambda r: (r.take(), r.send("HTTP/1.1 304 Not Modified\r\n\r\n")),
    "status-401": lambda r: (r.take(), r.answer("who", "401 No", 'WWW-Authenticate: Basic realm="x"\r\n')),
    "status-404": lambda r: status(r, "404 Not Found"),
    "status-413": lambda r: status(r, "413 Content Too Large"),
    "status-500": lambda r: status(r, "500 Internal Server Error"),
    "status-507": lambda r: status(r, "507 Insufficient Storage"),
    "long-500": lambda r: (r.take(), r.answer("x" * 9000, "500 Internal Server Error")),
    "garbage": lambda r: (r.take(), r.send(b"\x00\xff\x16\x03 this is not HTTP\r\n\r\n")),
    "no-head": lambda r: (r.take(), r.send(r.link + "\n")),
    "bad-status": lambda r: (r.take(), r.send("HTTP/1.1 two hundred\r\n\r\n" + r.link)),
    "wrong-version": lambda r: (r.take(), r.send("HTTP/7.3 200 OK\r\n\r\n" + r.link)),
    "bad-length": lambda r: (r.take(), r.send("HTTP/1.1 200 OK\r\nContent-Length: many\r\n\r\n" + r.link)),
    "cookie": lambda r: (r.take(), r.answer(r.link, headers="Set-Cookie: a=b\r\n")),
    "target": good,
}
for code in (300, 301, 302, 303, 307, 308):
    FAULTS[f"redirect-{code}"] = lambda r, code=code: redirect(r, code)
for function in (good, redirect_early, redirect_without_location, redirect_before_endless_answer, endless,
                 endless_chunks, endless_head, endless_1xx, chunked, until_close, early_413, reset_413, cut_413,
                 ignores_expect, refuses_expect, interim, only_100, switching, early_200, early_200_silent,
                 early_close, close_after_body, cut_answer, cut_head, reset_in_body, reset_at_once, silent, deaf,
                 silent_in_answer, dripping, gate, release):
    FAULTS[function.__name__.replace("_", "-")] = function


class Log:
    def __init__(self, path):
        self.file = open(path, "a", encoding="utf-8")
        self.lock = threading.Lock()

    def write(self, entry):
        with self.lock:
            self.file.write(json.dumps(entry) + "\n")
            self.file.flush()


class Server:
    def __init__(self, log):
        self.log = log
        self.stopped = threading.Event()
        self.released = threading.Event()
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.other = socket.create_server(("127.0.0.1", 0))
        self.other_port = self.other.getsockname()[1]

    def serve(self, connection):
        request = Request(connection, self.log)
        request.server = self
        end = "closed"
        try:
            request.read_head()
            FAULTS[request.fault](request)
        except (OSError, ValueError, KeyError) as error:
            end = f"{type(error).__name__}: {error}"
        finally:
            connection.close()
        self.log.write({"event": "end", "path": getattr(request, "path", ""), "how": end,
                        "bodyBytes": request.body_bytes, "sha256": request.digest.hexdigest()})

    def accept_others(self):
        while True:
            self.other.accept()[0].close()
            self.log.write({"event": "other"})

    def run(self):
        threading.Thread(target=self.accept_others, daemon=True).start()
        print(self.listener.getsockname()[1], flush=True)
        while True:
            connection, _ = self.listener.accept()
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()


if __name__ == "__main__":
    Server(Log(sys.argv[1])).run()
