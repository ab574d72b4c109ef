#!/usr/bin/env python3
"""Telephones out of the box, on a real network.

Each one boots as a SIP desk phone without a configuration does: it multicasts a SUBSCRIBE to
224.0.1.75:5060 and repeats it until it is answered, checks that the answers are its own, fetches
its file from the URL that the NOTIFY brings, and checks that the file is whole and made for its
family. Many can boot in one process. Prints JSON with the times from each one's boot to its file;
the exit code is 0 only when every telephone is content.
"""

import argparse
import asyncio
import json
import random
import socket
import struct
import sys
import time
import urllib.parse
import xml.etree.ElementTree as ElementTree

GROUP = "224.0.1.75"
SIP_PORT = 5060
REPLY_PORT = 5080
T1 = 0.5  # SIP's first repetition, and the longest pause between two
T2 = 4.0
# Long enough after the last step for an answer that should not have come.
QUIET = 1.0

# The family's own elements for the user ID, by which its documents differ.
FAMILY_ELEMENTS = {"desk": "P35", "cordless": "P4060"}


class Wrong(Exception):
    """What a telephone met that should not have been."""


def expect(what, actual, expected):
    if actual != expected:
        raise Wrong(f"{what}: {actual!r} instead of {expected!r}")


class Message:
    """A SIP message taken apart; the headers keep their order."""

    def __init__(self, datagram):
        head, separator, body = datagram.partition(b"\r\n\r\n")
        if not separator:
            raise Wrong("a message without an empty line")
        lines = head.decode("utf-8").split("\r\n")
        self.start = lines[0]
        self.body = body.decode("utf-8")
        self.headers = []
        for line in lines[1:]:
            name, colon, value = line.partition(":")
            if not colon or not name or name != name.strip():
                raise Wrong(f"no header: {line!r}")
            self.headers.append((name, value.strip()))

    def check(self, start, headers, body):
        expect("start line", self.start, start)
        found = dict(self.headers)
        for name, value in headers.items():
            expect(f"{self.start.split()[0]} {name}", found.get(name), value)
        expect("body", self.body, body)


class Phone(asyncio.DatagramProtocol):
    def __init__(self, options, number):
        self.options = options
        self.mac = format(int(options.mac, 16) + number, "012x")
        self.model = options.model[number % len(options.model)]
        self.family = "cordless" if self.model.startswith("DK") else "desk"
        self.known = not options.unknown
        self.branch = "z9hG4bK" + format(random.getrandbits(48), "x")
        self.tag = str(random.getrandbits(31))
        self.call_id = f"{random.getrandbits(31)}-{self.mac}@{options.address}"
        self.event = (f'ua-profile;profile-type="device";vendor="Example";model="{self.model}";'
                      'version="1.0"')
        self.sends = 0
        self.accepted = asyncio.Event()
        self.answered = asyncio.Event()
        self.url = None
        self.fault = None
        self.time_to_file = None
        self.booted_at = None

    # The wire

    def connection_made(self, transport):
        self.transport = transport
        self.port = transport.get_extra_info("sockname")[1]
        self.contact = f"{self.options.address}:{self.port}"

    def datagram_received(self, data, sender):
        try:
            self.take(Message(data), sender)
        except (Wrong, UnicodeDecodeError) as error:
            self.complain(str(error))

    def complain(self, fault):
        self.fault = self.fault or fault
        self.answered.set()

    def subscribe(self):
        identity = f"<sip:MAC%3A{self.mac}@{GROUP}>"
        lines = [
            f"SUBSCRIBE sip:MAC%3A{self.mac}@{GROUP} SIP/2.0",
            f"Via: SIP/2.0/UDP {self.contact};branch={self.branch}",
            f"From: {identity};tag={self.tag}",
            f"To: {identity}",
            f"Call-ID: {self.call_id}",
            "CSeq: 1 SUBSCRIBE",
            f"Contact: <sip:{self.contact}>",
            "Max-Forwards: 70",
            f"User-Agent: {self.model} 1.0",
            "Expires: 0",
            f"Event: {self.event}",
            "Accept: application/url",
            "Content-Length: 0",
        ]
        self.sends += 1
        self.transport.sendto("\r\n".join(lines + ["", ""]).encode(), (GROUP, SIP_PORT))

    def take(self, message, sender):
        if sender[1] != REPLY_PORT:
            raise Wrong(f"an answer from port {sender[1]}")
        if message.start.startswith("NOTIFY "):
            self.take_notify(message, sender)
        else:
            self.take_reply(message, sender)

    def take_reply(self, message, sender):
        if self.known:
            status, host, tag = "202 Accepted subscription", GROUP, "920204859"
        else:
            status, host, tag = "501 Not Implemented", sender[0], "1882999294"
        identity = f"<sip:MAC%3A{self.mac}@{host}>"
        message.check(f"SIP/2.0 {status}", {
            "Via": f"SIP/2.0/UDP {self.contact};branch={self.branch}",
            "From": f"{identity};tag={self.tag}",
            "To": f"{identity};tag={tag}",
            "Call-ID": self.call_id,
            "CSeq": "1 SUBSCRIBE",
            "Event": self.event,
            "Content-Length": "0",
        }, "")
        self.accepted.set()
        if not self.known:
            self.answered.set()

    def take_notify(self, message, sender):
        if not self.known:
            raise Wrong("a NOTIFY for an unknown telephone")
        if not self.accepted.is_set():
            raise Wrong("a NOTIFY before the subscription was accepted")
        local = f"{sender[0]}:{REPLY_PORT}"
        url = message.body
        message.check(f"NOTIFY sip:{self.contact} SIP/2.0", {
            "From": f"<sip:{local}>;tag={self.tag}",
            "To": f"<sip:{self.contact}>",
            "Contact": f"<sip:{local}>",
            "Content-Length": str(len(url)),
        }, self.expected_url())
        self.transport.sendto(self.ok_to(message), sender)
        self.url = url
        self.answered.set()

    def expected_url(self):
        wants_slash = self.model.upper().startswith("KTP") and self.model != "KTP2200"
        return self.options.url + ("/" if wants_slash else "")

    @staticmethod
    def ok_to(message):
        copied = [f"{name}: {value}" for name, value in message.headers
                  if name in ("Via", "From", "To", "Call-ID", "CSeq")]
        lines = ["SIP/2.0 200 OK", *copied, "Content-Length: 0"]
        return "\r\n".join(lines + ["", ""]).encode()

    # What the telephone does

    async def boot(self, delay):
        await asyncio.sleep(delay)
        self.booted_at = time.monotonic()
        try:
            await asyncio.wait_for(self.find_file(), self.options.timeout)
            # An answer too many is wrong as well.
            await asyncio.sleep(QUIET)
        except asyncio.TimeoutError:
            self.complain(f"not done after {self.options.timeout} s, {self.sends} SUBSCRIBEs sent")
        except (Wrong, OSError) as error:
            self.complain(str(error))

    async def find_file(self):
        pause = T1
        while not self.answered.is_set():
            self.subscribe()
            try:
                await asyncio.wait_for(self.answered.wait(), pause)
            except asyncio.TimeoutError:
                pause = min(2 * pause, T2)
        if self.fault:
            raise Wrong(self.fault)
        if self.known:
            self.check_document(await self.fetch(self.url))
            self.time_to_file = time.monotonic() - self.booted_at
        else:
            # It was told nothing; it also gets nothing when it asks all the same.
            expect("answer to an unknown telephone", await self.fetch(self.options.url), b"")

    async def fetch(self, url):
        folder = url if url.endswith("/") else url + "/"
        target = urllib.parse.urlsplit(folder + f"cfg{self.mac}.xml")
        reader, writer = await asyncio.open_connection(
            target.hostname, target.port or 80, local_addr=(self.options.address, 0))
        try:
            writer.write(f"GET {target.path} HTTP/1.0\r\nHost: {target.netloc}\r\n"
                         f"User-Agent: {self.model} 1.0\r\nAccept: */*\r\n\r\n".encode())
            return await reader.read(-1)
        finally:
            writer.close()

    def check_document(self, answer):
        head, _, document = answer.partition(b"\r\n\r\n")
        lines = head.decode("utf-8").split("\r\n")
        expect("HTTP status", lines[0], "HTTP/1.0 200 Ok")
        expect("HTTP headers", [line.partition(":")[0] for line in lines[1:]],
               ["Server", "Last-Modified", "Accept-Ranges", "Content-Type"])
        try:
            root = ElementTree.fromstring(document)
        except ElementTree.ParseError as error:
            raise Wrong(f"{len(document)} bytes of document: {error}") from error
        expect("root", root.tag, "vl_provision")
        values = {element.tag: element.text for element in root.iter()}
        for family, element in FAMILY_ELEMENTS.items():
            # The user ID tells that the document is this telephone's and no other's.
            expect(f"{element} for a {self.family} phone", values.get(element),
                   f"user-{self.mac}" if family == self.family else None)


def open_socket(address):
    sock = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    sock.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(address))
    sock.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_TTL, struct.pack("b", 1))
    sock.bind((address, 0))
    sock.setblocking(False)
    return sock


async def run(options):
    loop = asyncio.get_running_loop()
    phones = []
    for number in range(options.count):
        _, phone = await loop.create_datagram_endpoint(
            lambda number=number: Phone(options, number),
            sock=open_socket(options.address))
        phones.append(phone)
    delays = [options.spread * number / options.count for number in range(options.count)]
    await asyncio.gather(*(phone.boot(delay) for phone, delay in zip(phones, delays)))
    return phones


def report(phones):
    times = sorted(phone.time_to_file for phone in phones if phone.time_to_file is not None)
    return {
        "phones": len(phones),
        "files": len(times),
        "subscribes": sum(phone.sends for phone in phones),
        "seconds_to_last_file": round(times[-1], 3) if times else None,
        "wrong": {phone.mac: phone.fault for phone in phones if phone.fault},
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--address", required=True, help="the telephones' own IPv4 address")
    parser.add_argument("--url", required=True,
                        help="URL of the provisioning service, without a / at its end")
    parser.add_argument("--mac", default="0200a7000001", help="of the first; the others count up")
    parser.add_argument("--model", action="append",
                        help="in turn, when given more than once (default: KTP2135)")
    parser.add_argument("--count", type=int, default=1)
    parser.add_argument("--spread", type=float, default=1.0,
                        help="seconds over which the boots are spread")
    parser.add_argument("--timeout", type=float, default=10.0,
                        help="seconds that each telephone has from its boot to its file")
    parser.add_argument("--unknown", action="store_true",
                        help="the telephones are not in the list: 501 and no file is right")
    options = parser.parse_args()
    options.model = options.model or ["KTP2135"]

    result = report(asyncio.run(run(options)))
    print(json.dumps(result))
    return 1 if result["wrong"] else 0


if __name__ == "__main__":
    sys.exit(main())
