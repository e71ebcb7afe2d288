#!/usr/bin/env python3
"""webserver.py FOLDER - a web server on loopback for tests, plain and with TLS.

Makes a certificate in FOLDER, prints "PORT TLSPORT" and serves until its standard input closes. What an
address answers is in Handler.answer; the plain server's log of requests is FOLDER/requests.
"""
import http.server
import pathlib
import socket
import ssl
import subprocess
import sys
import threading
import time

BODY = b"1.6.6:2004\r\nQuenlin 1.7.0\r\n"


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def send(self, status, body, **headers):
        self.send_response(status)
        headers.setdefault("Content_Length", str(len(body)))
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.end_headers()
        self.wfile.write(body)

    def redirect(self, target):
        self.send(302, b"", Location=target)

    def do_GET(self):
        server = self.server
        with open(server.folder / "requests", "a", encoding="latin-1") as log:
            log.write(f"{self.path}\n{self.headers}")
        try:
            self.answer(self.path.lstrip("/"))
        except OSError:
            pass
        self.close_connection = True

    def answer(self, name):
        server = self.server
        if name == "file":
            self.send(200, BODY, Set_Cookie="id=1")
        elif name == "missing":
            self.send(404, BODY)
        elif name == "nothing":
            self.send(200, b"")
        elif name == "partial":
            self.send(206, BODY)
        elif name.startswith("hop"):
            left = int(name[3:])
            self.redirect(f"/hop{left - 1}" if left > 0 else "/file")
        elif name == "loop":
            self.redirect("/loop")
        elif name == "tohttp":
            self.redirect(f"http://127.0.0.1:{server.plain_port}/file")
        elif name == "tohttps":
            self.redirect(f"https://127.0.0.1:{server.tls_port}/file")
        elif name == "tofile":
            self.redirect("file:///etc/hostname")
        elif name == "limit":
            self.send(200, b"x" * (256 << 10))
        elif name == "large":
            self.send(200, b"x" * ((256 << 10) + 1))
        elif name == "endless":
            self.send_response(200)
            self.end_headers()
            while True:
                self.wfile.write(b"x" * 65536)
        elif name == "headers":
            self.wfile.write(b"HTTP/1.1 200 OK\r\n")
            while True:
                self.wfile.write(b"X: " + b"y" * 1000 + b"\r\n")
        elif name == "short":
            self.send(200, BODY, Content_Length="1000")
        elif name == "binary":
            self.send(200, bytes(range(256)))
        elif name == "nonsense":
            self.wfile.write(b"\0\1\2 this is no answer\r\n\r\n")
        elif name == "silent":
            time.sleep(60)  # longer than any limit of the tests
        elif name == "cut":
            self.connection.shutdown(socket.SHUT_RDWR)
        else:
            self.send(404, b"")


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    folder = plain_port = tls_port = None

    def handle_error(self, *_):
        pass


def main():
    folder = pathlib.Path(sys.argv[1])
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2",
                    "-keyout", folder / "key.pem", "-out", folder / "certificate.pem",
                    "-subj", "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1"],
                   check=True, capture_output=True)
    plain, tls = Server(("127.0.0.1", 0), Handler), Server(("127.0.0.1", 0), Handler)
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(folder / "certificate.pem", folder / "key.pem")
    tls.socket = context.wrap_socket(tls.socket, server_side=True)
    for server in (plain, tls):
        server.folder, server.plain_port, server.tls_port = folder, plain.server_port, tls.server_port
        threading.Thread(target=server.serve_forever, daemon=True).start()
    print(plain.server_port, tls.server_port, flush=True)
    sys.stdin.read()


if __name__ == "__main__":
    main()
