#!/usr/bin/env python3
"""The program and telephones that boot, each on a host of its own.

Builds networks of hosts (network namespaces with virtual cards on a bridge), runs the program's
window on one of them and telephones on the others, and checks what they get and what is on the
wire. Everything lives in namespaces of this process, which the kernel takes away with it however
it ends. Exit code 77 where such namespaces cannot be made.
"""

import argparse
import json
import os
import pathlib
import select
import shutil
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
HOSTILE = HERE / "hostile.py"
PHONE = HERE.parent / "phone" / "sip_phone.py"
REPLY_PORT = 5080
SKIPPED = 77
INSIDE = "--inside"
READY_SECONDS = 60
CLOSE_SECONDS = 10
PHONE_SECONDS = 10  # from each one's boot to its file

DESK_MAC = "0200a7000001"
CORDLESS_MAC = "0200a7010001"
MOST_ANSWERS = 500  # a second
UNKNOWN_MAC = "0200a7ff0001"
DESK_MODELS = ["KTP2135", "KTP2200", "ktp1610", "KTV3175"]
CORDLESS_MODELS = ["DK710"]


class Failed(Exception):
    pass


def say(text):
    print(text, flush=True)


def skip(reason):
    say(f"SKIPPED: {reason}")
    sys.exit(SKIPPED)


# Going into namespaces of our own


def private_namespaces():
    """The command that starts another with private namespaces, or None with the reason."""
    if not shutil.which("unshare") or not shutil.which("ip"):
        return None, "unshare (util-linux) or ip (iproute2) is not installed"
    base = ["unshare", "--net", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if os.geteuid() != 0:
        base += ["--user", "--map-root-user"]
    trial = ("mount -t tmpfs tmpfs /run && mkdir /run/netns && ip netns add trial && "
             "ip link add bridge0 type bridge && ip link add cable0 type veth peer name cable1 && "
             "ip netns exec trial true")
    done = subprocess.run(base + ["sh", "-c", trial], capture_output=True, text=True, check=False)
    reason = done.stderr.strip().replace("\n", "; ") or f"exit code {done.returncode}"
    return (base, "") if done.returncode == 0 else (None, reason)


def go_inside():
    command, reason = private_namespaces()
    if command is None:
        skip(f"no network namespaces can be made here: {reason}")
    script = str(pathlib.Path(__file__).resolve())
    os.execvp(command[0], command + [sys.executable, script, INSIDE] + sys.argv[1:])


def sh(*words):
    done = subprocess.run(words, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise Failed(f"{' '.join(words)}: {done.stderr.strip()}")
    return done.stdout


# The network


class Network:
    """Bridges in a host of their own, as switches are, and hosts with cables to them."""

    def __init__(self, name):
        self.name = name
        self.cables = 0
        self.hosts = []
        self.switch = self.add_host("switch")

    def add_host(self, role):
        host = f"{self.name}-{role}"
        sh("ip", "netns", "add", host)
        self.hosts.append(host)
        sh("ip", "-n", host, "link", "set", "lo", "up")
        return host

    def add_bridge(self, bridge):
        sh("ip", "-n", self.switch, "link", "add", bridge, "type", "bridge")
        sh("ip", "-n", self.switch, "link", "set", bridge, "up")

    def plug(self, host, card, address, bridge):
        self.cables += 1
        port = f"port{self.cables}"
        sh("ip", "-n", self.switch, "link", "add", port, "type", "veth",
           "peer", "name", card, "netns", host)
        sh("ip", "-n", self.switch, "link", "set", port, "master", bridge, "up")
        sh("ip", "-n", host, "address", "add", f"{address}/24", "brd", "+", "dev", card)
        sh("ip", "-n", host, "link", "set", card, "up")

    def remove(self):
        for host in reversed(self.hosts):
            sh("ip", "netns", "del", host)


def in_host(host, *words):
    return ["ip", "netns", "exec", host, *map(str, words)]


class Program:
    """The program on its host, from the click on its buttons to their release."""

    def __init__(self, executable, host, address, desk, cordless):
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen",
                           QT_LOGGING_RULES="default.debug=false")
        self.process = subprocess.Popen(
            in_host(host, executable, address, desk, cordless), env=environment, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        readable, _, _ = select.select([self.process.stdout], [], [], READY_SECONDS)
        line = self.process.stdout.readline().strip() if readable else "silence"
        if line != "ready":
            self.process.kill()
            raise Failed(f"the program did not get ready: {line}")

    def close(self):
        try:
            output, _ = self.process.communicate(timeout=CLOSE_SECONDS)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise Failed("the program did not end") from None
        if self.process.returncode != 0:
            raise Failed(f"the program ended with {self.process.returncode}: {output.strip()}")


def start_phones(host, address, program_address, mac, models, count, *more):
    words = [sys.executable, PHONE, "--address", address, "--url", f"http://{program_address}:80",
             "--mac", mac, "--count", count, "--timeout", PHONE_SECONDS, *more]
    for model in models:
        words += ["--model", model]
    return subprocess.Popen(in_host(host, *words), stdout=subprocess.PIPE, text=True)


def finish_phones(what, process, quiet=False):
    output, _ = process.communicate(timeout=PHONE_SECONDS + 20)
    result = json.loads(output) if output else {"wrong": "no report"}
    if process.returncode != 0 or result["wrong"]:
        raise Failed(f"{what}: {result['wrong']}")
    if not quiet:
        say(f"  {what}: {json.dumps(result)}")
    return result


# What is on the wire


class Capture:
    """Writes down what passes a card, and has a protocol analyser read it."""

    def __init__(self, host, card, folder):
        self.file = os.path.join(folder, f"{host}.pcap")
        self.process = None
        if not shutil.which("tshark"):
            return
        self.process = subprocess.Popen(
            in_host(host, "dumpcap", "-q", "-i", card, "-w", self.file, "-f", "udp"),
            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        # Says where it writes once it listens.
        for line in self.process.stderr:
            if line.startswith("File:"):
                return
        raise Failed("dumpcap does not run")

    def fields(self, display_filter, *fields):
        # Told what the port is for: a telephone's own port may be some other protocol's.
        words = ["tshark", "-r", self.file, "-d", f"udp.port=={REPLY_PORT},sip",
                 "-Y", display_filter, "-T", "fields"]
        for field in fields:
            words += ["-e", field]
        return sh(*words).splitlines()

    def check(self):
        if self.process is None:
            say("  the wire was NOT checked: tshark is not installed")
            return
        self.process.terminate()
        self.process.wait()
        counts = {
            "202": len(self.fields("sip.Status-Code == 202", "frame.number")),
            "501": len(self.fields("sip.Status-Code == 501", "frame.number")),
            "NOTIFY": len(self.fields("sip.Method == NOTIFY", "frame.number")),
            "SUBSCRIBE": len(self.fields("sip.Method == SUBSCRIBE", "frame.number")),
        }
        if min(counts.values()) == 0 or counts["202"] != counts["NOTIFY"]:
            raise Failed(f"the wire: {counts}")
        unread = self.fields(f"udp.srcport == {REPLY_PORT} && !sip", "frame.number")
        faults = self.fields("sip && (_ws.malformed || _ws.expert.severity >= 4194304)",
                             "frame.number", "sip.Request-Line", "sip.Status-Line",
                             "_ws.expert.message")
        if unread or faults:
            raise Failed("the wire: " + "; ".join(faults or ["answers that are no SIP"]))
        say(f"  the wire: {json.dumps(counts)}, no malformed field, no warning of tshark's")


# The runs


def boot(network, program_address, phone_address, bridge, count):
    """Both families boot together, a telephone that is not in the list among them."""
    desk = network.add_host("desk")
    network.plug(desk, "eth0", phone_address(20), bridge)
    cordless = network.add_host("cordless")
    network.plug(cordless, "eth0", phone_address(21), bridge)
    stranger = network.add_host("stranger")
    network.plug(stranger, "eth0", phone_address(22), bridge)
    half = count // 2
    started = [
        ("desk phones", start_phones(desk, phone_address(20), program_address, DESK_MAC,
                                     DESK_MODELS, count - half)),
        ("cordless phones", start_phones(cordless, phone_address(21), program_address,
                                         CORDLESS_MAC, CORDLESS_MODELS, half)),
        ("unknown phones", start_phones(stranger, phone_address(22), program_address,
                                        UNKNOWN_MAC, DESK_MODELS, 3, "--unknown")),
    ]
    results = [finish_phones(what, process) for what, process in started]
    if [result["files"] for result in results] != [count - half, half, 0]:
        raise Failed("not every telephone has its file")


def run(options, folder, name, net, more_cards=0, default_route=True, pull=False):
    """`net`: the first three bytes of the network that the chosen card and the telephones are in."""
    network = Network(name)
    host = network.add_host("host")
    network.add_bridge("phones")
    for number in range(more_cards):
        network.add_bridge(f"other{number}")
        network.plug(host, f"eth{number}", f"192.0.{number + 2}.1", f"other{number}")
    card = f"eth{more_cards}"
    address = f"{net}.1"
    network.plug(host, card, address, "phones")
    if default_route:
        sh("ip", "-n", host, "route", "add", "default", "via", "192.0.2.254")
    capture = Capture(host, card, folder)
    program = Program(options.program, host, address, options.count, options.count)
    boot(network, address, lambda last: f"{net}.{last}", "phones", options.count)
    capture.check()
    if pull:
        # The cable is pulled: plug-and-play can be switched off all the same.
        sh("ip", "-n", host, "address", "flush", "dev", card)
        sh("ip", "-n", host, "link", "set", card, "down")
    program.close()
    network.remove()


def attack(host, program_address, addresses, *more):
    words = [sys.executable, HOSTILE, "--target", program_address, "--mac", DESK_MAC, *more]
    for address in addresses:
        words += ["--address", address]
    result = json.loads(sh(*in_host(host, *words)))
    say(f"  {host}, {len(addresses)} addresses, {' '.join(more)}: {json.dumps(result)}")
    if result["most_in_a_second"] > MOST_ANSWERS:
        raise Failed("too many answers")
    return result["answers"]


def endure(options, folder, name):
    """One host floods the program, by one address, by many, and naming a host behind the router."""
    network = Network(name)
    for bridge in ("phones", "outside"):
        network.add_bridge(bridge)
    hosts = {role: network.add_host(role)
             for role in ("host", "router", "hostile", "phone", "victim")}
    own = [f"192.0.2.{last}" for last in range(100, 200)]
    network.plug(hosts["host"], "eth0", "192.0.2.1", "phones")
    network.plug(hosts["phone"], "eth0", "192.0.2.20", "phones")
    network.plug(hosts["hostile"], "eth0", own[0], "phones")
    for address in own[1:]:
        sh("ip", "-n", hosts["hostile"], "address", "add", f"{address}/24", "dev", "eth0")
    network.plug(hosts["router"], "eth0", "192.0.2.254", "phones")
    network.plug(hosts["router"], "eth1", "198.51.100.254", "outside")
    sh(*in_host(hosts["router"], "sh", "-c", "echo 1 > /proc/sys/net/ipv4/ip_forward"))
    network.plug(hosts["victim"], "eth0", "198.51.100.9", "outside")
    sh("ip", "-n", hosts["host"], "route", "add", "default", "via", "192.0.2.254")
    sh("ip", "-n", hosts["victim"], "route", "add", "default", "via", "198.51.100.254")
    program = Program(options.program, hosts["host"], "192.0.2.1", options.count, 0)

    phones = start_phones(hosts["phone"], "192.0.2.20", "192.0.2.1", DESK_MAC, DESK_MODELS, 1)
    attack(hosts["hostile"], "192.0.2.1", own[:1])
    finish_phones("a phone beside it", phones)
    attack(hosts["hostile"], "192.0.2.1", own)
    capture = Capture(hosts["victim"], "eth0", folder)
    attack(hosts["hostile"], "192.0.2.1", own[:1], "--via", "198.51.100.9:5062")
    if capture.process is not None:
        capture.process.terminate()
        capture.process.wait()
        reached = len(capture.fields("udp", "frame.number"))
        say(f"  datagrams that reached the host behind the router: {reached}")
        if reached:
            raise Failed("a host in another network was answered")
    # The way there is open: who asks from there gets an answer.
    if not attack(hosts["victim"], "192.0.2.1", ["198.51.100.9"], "--rate", "10"):
        raise Failed("nothing comes through the router, so nothing was shown")
    program.close()
    network.remove()


RUNS = {
    "a card with a default route": (run, dict(name="route", net="192.0.2", pull=True)),
    "a card, no default route": (run, dict(name="noroute", net="192.0.2", default_route=False)),
    "two cards, the second chosen": (run, dict(name="second", net="198.51.100", more_cards=1)),
    "a hostile host": (endure, dict(name="hostile")),
}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program", help="the provisioning_host executable")
    parser.add_argument("--count", type=int, default=100,
                        help="telephones that boot within a second")
    if INSIDE not in sys.argv:
        parser.parse_args()
        go_inside()
    sys.argv.remove(INSIDE)
    options = parser.parse_args()

    # Private to this process: the names of the namespaces, and the networks themselves.
    sh("mount", "-t", "tmpfs", "tmpfs", "/run")
    failures = 0
    for what, (test, case) in RUNS.items():
        say(f"{what}: {options.count} telephones")
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0o755)
            try:
                begin = time.monotonic()
                test(options, folder, **case)
                say(f"  passed in {time.monotonic() - begin:.1f} s")
            except Failed as failure:
                failures += 1
                say(f"  FAILED: {failure}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
