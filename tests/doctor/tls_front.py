"""Speaks TLS in front of a plain server: tls_front.py CERTIFICATE KEY PORT

Prints its own port. Each connection whose handshake succeeds is passed on, byte by byte, to PORT of 127.0.0.1. Ends with
its standard input.
"""
import os
import socket
import ssl
import sys
import threading


def pump(source, target):
    try:
        while data := source.recv(65536):
            target.sendall(data)
    except OSError:
        pass
    try:
        target.shutdown(socket.SHUT_WR)
    except OSError:
        pass


def serve(plain, context, port):
    try:
        with context.wrap_socket(plain, server_side=True) as client:
            with socket.create_connection(("127.0.0.1", port)) as server:
                threading.Thread(target=pump, args=(client, server), daemon=True).start()
                pump(server, client)
    except OSError:
        plain.close()


def accept_all(listener, context, port):
    while True:
        connection, _ = listener.accept()
        threading.Thread(target=serve, args=(connection, context, port), daemon=True).start()


context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(sys.argv[1], sys.argv[2])
listener = socket.create_server(("127.0.0.1", 0))
print(listener.getsockname()[1], flush=True)
threading.Thread(target=accept_all, args=(listener, context, int(sys.argv[3])), daemon=True).start()
sys.stdin.read()
os._exit(0)
