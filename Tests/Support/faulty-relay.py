#!/usr/bin/python3
"""A server on loopback that hands on to another one, until a client says a certain word.

usage: faulty-relay.py PORT WORD FAULT FILE

Then the connection is cut ("cut"), goes silent ("silent"), hands the word on and the answer is never given ("deaf"), or
ends within its first line's end ("split"), or answers more than it is asked from there on ("chatty"); further connections
are handed on as they are. Writes its port into the file, then serves until it is killed; once it has heard the word it
makes FILE.heard.
"""

import contextlib
import os
import pathlib
import socket
import socketserver
import sys
import threading
import time

WORD = sys.argv[2].encode()
FAULT = sys.argv[3]
HEARD = pathlib.Path(sys.argv[4] + ".heard")


class Client(socketserver.BaseRequestHandler):
    def handle(self):
        with contextlib.suppress(OSError), socket.create_connection(("127.0.0.1", int(sys.argv[1]))) as server:
            self.is_deaf = self.splits = False
            self.more = b""
            threading.Thread(target=self.hand_back, args=(server,), daemon=True).start()
            said = b""
            while words := self.request.recv(65536):
                said = said[-len(WORD):] + words
                if WORD in said and not HEARD.exists():
                    HEARD.touch()
                    if FAULT == "cut":
                        return
                    self.is_deaf = FAULT in ("silent", "deaf")
                    self.splits = FAULT == "split"
                    self.more = b"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n" if FAULT == "chatty" else b""
                    if FAULT != "silent":
                        server.sendall(words)
                elif not self.is_deaf:
                    server.sendall(words)

    def hand_back(self, server):
        with contextlib.suppress(OSError):
            while (words := server.recv(65536)) and not self.is_deaf:
                if self.splits:
                    self.request.sendall(words[:words.index(b"\r") + 1])
                    break
                self.request.sendall(words)
                if self.more:
                    time.sleep(0.1)  # what comes at once is not looked at before the next request is sent
                    self.request.sendall(self.more)
            if not self.is_deaf:
                self.request.shutdown(socket.SHUT_WR)


class Server(socketserver.ThreadingTCPServer):
    daemon_threads = True


with Server(("127.0.0.1", 0), Client) as listener:
    with open(sys.argv[4] + ".new", "w", encoding="ascii") as file:
        file.write(str(listener.server_address[1]))
    os.rename(sys.argv[4] + ".new", sys.argv[4])
    listener.serve_forever()
