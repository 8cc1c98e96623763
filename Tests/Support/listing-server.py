#!/usr/bin/python3
"""A server of the svn protocol on loopback that lists an item outside of the folder it is asked for.

usage: listing-server.py FILE

Writes its port into the file, and serves until it is killed.
"""

import os
import socketserver
import sys

UUID = "6f8b0a52-0000-4000-8000-000000000000"
ANSWERS = {
    "get-latest-rev": "( success ( 1 ) ) ",
    "check-path": "( success ( dir ) ) ",
    "stat": "( success ( ( ( dir 0 false 1 ( ) ( ) ) ) ) ) ",
    "get-locks": "( success ( ( ) ) ) ",
    "list": "( 6:/trunk dir ) ( 15:/trunk/in-trunk file ) ( 10:/elsewhere file ) done ( success ( ) ) ",
}


class Client(socketserver.StreamRequestHandler):
    def read_item(self):
        """One item of the protocol, strings as they are, lists as lists."""
        word = b""
        while True:
            letter = self.rfile.read(1)
            if not letter:
                raise EOFError
            if letter == b":":
                return self.rfile.read(int(word)).decode()
            if letter in b" \n":
                if word == b"(":
                    return self.read_list()
                if word:
                    return word.decode()
            else:
                word += letter

    def read_list(self):
        items = []
        while True:
            item = self.read_item()
            if item == ")":
                return items
            items.append(item)

    def send(self, text):
        self.wfile.write(text.encode())

    def handle(self):
        root = f"svn://127.0.0.1:{self.server.server_address[1]}"
        try:
            self.send("( success ( 2 2 ( ) ( edit-pipeline svndiff1 depth list ) ) ) ")
            self.read_item()
            self.send("( success ( ( ANONYMOUS ) 4:fake ) ) ")
            self.read_item()
            self.send(f"( success ( ) ) ( success ( {len(UUID)}:{UUID} {len(root)}:{root} ( ) ) ) ")
            while True:
                command = self.read_item()
                self.send("( success ( ( ) 0: ) ) " + ANSWERS.get(command[0], "( success ( ) ) "))
        except EOFError:
            pass


with socketserver.ThreadingTCPServer(("127.0.0.1", 0), Client) as server:
    with open(sys.argv[1] + ".new", "w", encoding="ascii") as file:
        file.write(str(server.server_address[1]))
    os.rename(sys.argv[1] + ".new", sys.argv[1])
    server.serve_forever()
