"""Answers add-ons on loopback, also as no service should: http_server.py PORT LOG [CERTIFICATE KEY]

Each request is a line of the log: seconds, path, and the header X-Key if there is one."""

import email.utils
import gzip
import hashlib
import http.server
import os
import socket
import ssl
import struct
import sys
import time
import urllib.parse


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    seen = {}

    def log_message(self, *_):
        pass

    def answer(self, status=200, body=b"body", **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def do_GET(self):
        log.write("%.6f %s %s\n" % (time.monotonic(), self.path, self.headers.get("X-Key", "-")))
        log.flush()
        path = urllib.parse.unquote(self.path.split("?")[0])
        name, *rest = path.strip("/").split("/")
        times = self.seen[self.path] = self.seen.get(self.path, 0) + 1
        if name == "page":  # /page/CACHE-CONTROL/...
            self.answer(body=b"answer %d" % times, Cache_Control=rest[0])
        elif name == "tag":  # known by a tag or by a date, fresh for no time
            if "If-None-Match" in self.headers or "If-Modified-Since" in self.headers:
                self.answer(304, b"", Cache_Control="max-age=0")
            elif rest[0] == "etag":
                self.answer(body=b"tagged", ETag='"v1"', Cache_Control="no-cache")
            else:
                date = "Sun, 22 Nov 2015 10:00:00 GMT"
                self.answer(body=b"dated", Last_Modified=date, Cache_Control="max-age=0")
        elif name == "status":  # /status/N[/RETRY-AFTER]: N the first time, 200 later
            more = {"Retry_After": rest[1]} if len(rest) > 1 else {}
            self.answer(int(rest[0]) if times == 1 else 200, **more)
        elif name == "always":
            more = {"Retry_After": rest[1]} if len(rest) > 1 else {}
            self.answer(int(rest[0]), **more)
        elif name == "circle":
            self.answer(302, b"", Location=self.path)
        elif name == "to":  # /to/SCHEME/HOST/...
            self.answer(307, b"", Location=rest[0] + "://" + "/".join(rest[1:]))
        elif name == "size":
            self.answer(body=b"x" * int(rest[0]))
        elif name == "random":  # packed, still a half
            self.answer(body=os.urandom(int(rest[0]) // 2).hex().encode())
        elif name == "bomb":
            self.answer(body=gzip.compress(b"0" * (64 << 20)), Content_Encoding="gzip")
        elif name == "gzip":
            self.answer(body=gzip.compress(b"unpacked"), Content_Encoding="gzip")
        elif name == "slow":
            self.send_response(200)
            self.end_headers()
            for _ in range(100):
                self.wfile.write(b"x")
                time.sleep(0.3)
        elif name == "reset":  # in the middle, the first time or always
            if rest[0] == "once" and times > 1:
                self.answer()
            else:
                self.send_response(200)
                self.send_header("Content-Length", "1000")
                self.end_headers()
                self.wfile.write(b"half")
                linger = struct.pack("ii", 1, 0)
                self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, linger)
                os.close(self.connection.detach())
        elif name == "sets":
            self.data_set(*rest)
        else:
            self.answer(404, b"")

    def data_set(self, way, name):  # of /tmp/served: whole, or in another way
        with open("/tmp/served/" + name, "rb") as file:
            whole = body = file.read()
        tag = '"%s"' % hashlib.sha256(whole).hexdigest()
        modified = email.utils.formatdate(os.path.getmtime("/tmp/served/" + name), usegmt=True)
        status, start = 200, 0
        if way == "nothing":
            linger = struct.pack("ii", 1, 0)
            self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, linger)
            os.close(self.connection.detach())
            return
        if way == "gone" and name == "title.akas.tsv.gz":
            status, body = 404, b"none"
        elif way == "page" and name == "title.basics.tsv.gz":
            body = b"<html>"
        elif self.headers.get("If-None-Match") == tag:
            status, body = 304, b""
        elif "Range" in self.headers and self.headers.get("If-Range") == tag:
            start = int(self.headers["Range"][6:-1])
            status, body = 206, whole[start:]
        log.write("%s %d\n" % (self.path, status))
        log.flush()
        self.send_response(status)
        self.send_header("ETag", tag)
        self.send_header("Last-Modified", modified)
        self.send_header("Content-Length", str(len(body)))
        if status == 206:
            self.send_header("Content-Range", "bytes %d-%d/%d" % (start, len(whole) - 1, len(whole)))
        self.end_headers()
        if way == "slow":
            for i in range(0, len(body), 2000):
                self.wfile.write(body[i:i + 2000])
                time.sleep(0.02)
        elif way == "pieces" and len(body) > 80000:
            self.wfile.write(body[:80000])
            self.close_connection = True
        else:
            self.wfile.write(body)


class Server(http.server.ThreadingHTTPServer):
    request_queue_size = 512

    def handle_error(self, *_):
        pass


log = open(sys.argv[2], "a")
server = Server(("127.0.0.1", int(sys.argv[1])), Handler)
if len(sys.argv) > 3:
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(sys.argv[3], sys.argv[4])
    server.socket = context.wrap_socket(server.socket, server_side=True)
server.serve_forever()
