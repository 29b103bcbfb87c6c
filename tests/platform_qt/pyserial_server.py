"""A serial server of pyserial's port manager over a serial object that is not there.

Prints "port N" first, then a line for whatever the client does to the serial object ("baudrate
19200", "dtr True", "data 0d0a"). Takes lines: "lines CTS DSR CD" with 0 or 1 each sets the modem
lines, "data HEX" sends bytes to the client, "hangup" ends the client's connection.
"""
import os
import select
import socket
import sys

import serial.rfc2217


def tell(*words):
    print(*words, flush=True)


class FakeSerial:
    """Keeps what is set and tells of it."""

    def __init__(self):
        values = dict(baudrate=9600, bytesize=8, parity='N', stopbits=1, break_condition=False,
                      dtr=True, rts=True, xonxoff=False, rtscts=False,
                      cts=False, dsr=False, ri=False, cd=False)
        self.__dict__.update(values)

    def __setattr__(self, name, value):
        self.__dict__[name] = value
        if name not in ('cts', 'dsr', 'cd'):
            tell(name, value)

    def reset_input_buffer(self):
        tell('purge in')

    def reset_output_buffer(self):
        tell('purge out')


class Server:
    def __init__(self):
        self.listener = socket.create_server(('127.0.0.1', 0))
        self.serial = FakeSerial()
        self.client = None
        self.manager = None
        tell('port', self.listener.getsockname()[1])

    def write(self, data):
        """What the port manager sends."""
        self.client.sendall(data)

    def accept(self):
        self.client, _ = self.listener.accept()
        self.client.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.manager = serial.rfc2217.PortManager(self.serial, self)

    def drop(self):
        self.client.close()
        self.client = None

    def serve(self):
        try:
            data = self.client.recv(4096)
        except ConnectionError:
            data = b''
        if not data:
            self.drop()
            return
        got = b''.join(self.manager.filter(data))
        if got:
            tell('data', got.hex())

    def command(self, line):
        words = line.split()
        if words[0] == 'lines':
            self.serial.cts, self.serial.dsr, self.serial.cd = (w == '1' for w in words[1:4])
            if self.client:
                self.manager.check_modem_lines()
        elif words[0] == 'data':
            self.client.sendall(b''.join(self.manager.escape(bytes.fromhex(words[1]))))
        elif words[0] == 'hangup':
            self.drop()

    def run(self):
        rest = ''
        while True:
            waiting = [sys.stdin, self.client or self.listener]
            ready, _, _ = select.select(waiting, [], [])
            if sys.stdin in ready:
                # Not readline: what it buffers select doesn't see.
                text = os.read(sys.stdin.fileno(), 65536).decode()
                if not text:
                    return
                *lines, rest = (rest + text).split('\n')
                for line in lines:
                    self.command(line)
            elif self.client in ready:
                try:
                    self.serve()
                except ConnectionError:
                    self.drop()
            elif self.listener in ready:
                try:
                    self.accept()
                except ConnectionError:
                    self.drop()


Server().run()
