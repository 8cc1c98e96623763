#!/usr/bin/python3
"""A web server on loopback that hands on what another one answers, but answers requests of a method itself, with a status
and the address of another place.

usage: redirecting-server.py PORT FILE METHOD STATUS

The other one listens on the port. Writes its own port into the file, and serves until it is killed.
"""

import http.client
import http.server
import os
import sys

METHOD, STATUS = sys.argv[3], int(sys.argv[4])
FRAMING = ("content-length", "transfer-encoding", "connection")


class Client(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def __getattr__(self, name):
        if name.startswith("do_"):
            return self.answer
        raise AttributeError(name)

    def answer(self):
        body = self.read_body()
        status, headers, text = self.redirect() if self.command == METHOD else self.ask(body)
        self.send_response_only(status)
        for name, value in headers:
            if name.lower() not in FRAMING:
                self.send_header(name, value)
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)

    def read_body(self):
        if "Transfer-Encoding" not in self.headers:
            return self.rfile.read(int(self.headers.get("Content-Length", 0)))
        chunks = []
        while not chunks or chunks[-1]:
            chunks.append(self.rfile.read(int(self.rfile.readline(), 16)))
            self.rfile.readline()
        return b"".join(chunks)

    def redirect(self):
        return STATUS, [("Location", f"http://{self.headers['Host']}/elsewhere")], b""

    def ask(self, body):
        other = http.client.HTTPConnection("127.0.0.1", int(sys.argv[1]))
        other.request(self.command, self.path, body,
                      {name: value for name, value in self.headers.items() if name.lower() not in FRAMING})
        answer = other.getresponse()
        return answer.status, answer.getheaders(), answer.read()

    def log_message(self, *_):
        pass


with http.server.ThreadingHTTPServer(("127.0.0.1", 0), Client) as server:
    with open(sys.argv[2] + ".new", "w", encoding="ascii") as file:
        file.write(str(server.server_address[1]))
    os.rename(sys.argv[2] + ".new", sys.argv[2])
    server.serve_forever()
