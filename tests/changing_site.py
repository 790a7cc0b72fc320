"""Passes requests on to the sample site, and changes its pages: changing_site.py PORT CERTIFICATE KEY

Lines "OLD<tab>NEW" of /tmp/changes are replaced in each page."""

import http.client
import http.server
import os
import ssl
import sys


class Handler(http.server.BaseHTTPRequestHandler):
    def log_message(self, *_):
        pass

    def do_GET(self):
        site = http.client.HTTPSConnection("127.0.0.1", 8443, context=ssl._create_unverified_context())
        site.request("GET", self.path, headers={"Host": self.headers["Host"]})
        answer = site.getresponse()
        page = answer.read()
        if os.path.exists("/tmp/changes"):
            with open("/tmp/changes", "rb") as changes:
                for line in changes.read().splitlines():
                    page = page.replace(*line.split(b"\t"))
        self.send_response(answer.status)
        self.send_header("Content-Length", str(len(page)))
        self.send_header("Set-Cookie", "session-id=C00KIESECRET")
        self.end_headers()
        self.wfile.write(page)


port, certificate, key = sys.argv[1:]
server = http.server.ThreadingHTTPServer(("127.0.0.1", int(port)), Handler)
context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(certificate, key)
server.socket = context.wrap_socket(server.socket, server_side=True)
server.serve_forever()
