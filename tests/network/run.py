#!/usr/bin/env python3
"""The program and telephones that boot, each on a host of its own.

Builds networks of hosts (network namespaces with virtual cards on a bridge), runs the program's
window on one of them and telephones on the others, and checks what they get. Everything lives in
namespaces of this process, which the kernel takes away with it however it ends. Its argument is the
provisioning_host executable. Exit code 77 where such namespaces cannot be made.
"""

import json
import os
import pathlib
import subprocess
import sys

PHONES = pathlib.Path(__file__).resolve().with_name("phones.py")
SKIPPED = 77
INSIDE = "--inside"
COUNT = 100  # telephones that boot within a second
CLOSE_SECONDS = 10
PHONE_SECONDS = 10  # from each one's boot to its file

# The first MAC, the models in turn, and the element that holds the user ID, by which the documents
# of the families differ.
DESK = ("0200a7000001", ["KTP2135", "KTP2200", "ktp1610", "KTV3175"], "P35")
CORDLESS = ("0200a7010001", ["DK710"], "P4060")
UNKNOWN = ("0200a7ff0001", ["KTP2135"], None)
LIST = "/run/devices.csv"


class Failed(Exception):
    pass


def say(text):
    print(text, flush=True)


def sh(*words):
    done = subprocess.run([*map(str, words)], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise Failed(f"{' '.join(map(str, words))}: {done.stderr.strip()}")


def ip(host, words):
    sh("ip", "-n", host, *words.split())


def in_host(host, *words):
    return ["ip", "netns", "exec", host, *map(str, words)]


def go_inside():
    """Starts this script anew in private namespaces."""
    command = ["unshare", "--net", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if os.geteuid() != 0:
        command += ["--user", "--map-root-user"]
    trial = ("mount -t tmpfs tmpfs /run && mkdir /run/netns && ip netns add trial && "
             "ip link add bridge0 type bridge && ip link add cable0 type veth peer name cable1 && "
             "ip netns exec trial true")
    try:
        sh(*command, "sh", "-c", trial)
    except (Failed, FileNotFoundError) as reason:
        say(f"SKIPPED: no network namespaces can be made here: {reason}")
        sys.exit(SKIPPED)
    os.execvp(command[0], [*command, sys.executable, __file__, INSIDE, *sys.argv[1:]])


class Network:
    """Bridges in a host of their own, as switches are, and hosts with cables to them."""

    def __init__(self, name, *bridges):
        self.name = name
        self.cables = 0
        self.switch = self.add_host("switch")
        for bridge in bridges:
            ip(self.switch, f"link add {bridge} up type bridge")

    def add_host(self, role, *cards):
        """A host with these cards, each an address and the bridge that it leads to."""
        host = f"{self.name}-{role}"
        sh("ip", "netns", "add", host)
        ip(host, "link set lo up")
        for number, (address, bridge) in enumerate(cards):
            self.cables += 1
            port, card = f"port{self.cables}", f"eth{number}"
            ip(self.switch, f"link add {port} type veth peer name {card} netns {host}")
            ip(self.switch, f"link set {port} master {bridge} up")
            ip(host, f"address add {address}/24 brd + dev {card}")
            ip(host, f"link set {card} up")
        return host


def write_list():
    with open(LIST, "w", encoding="utf-8") as file:
        file.write("MAC,Product Model,SIP Server,SIP User ID,Password,City,Company\n")
        for first, product in ((DESK[0], "KTP21XX"), (CORDLESS[0], "DK71X")):
            for number in range(COUNT):
                mac = format(int(first, 16) + number, "012x")
                colons = ":".join(mac[at:at + 2] for at in range(0, 12, 2)).upper()
                file.write(f'{colons},{product},sip.example.com,user-{mac},"<&"">",Zürich,\n')


def start_program(executable, host, address):
    """From the click on its buttons on."""
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen",
                       QT_LOGGING_RULES="default.debug=false")
    program = subprocess.Popen(in_host(host, executable, address, LIST), env=environment, text=True,
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    line = program.stdout.readline().strip()
    if line != "ready":
        program.kill()
        raise Failed(f"the program did not get ready: {line}")
    return program


def end_program(program):
    """The exit code tells whether its buttons still do what they say."""
    try:
        output, _ = program.communicate(timeout=CLOSE_SECONDS)
    except subprocess.TimeoutExpired:
        program.kill()
        raise Failed("the program did not end") from None
    if program.returncode != 0:
        raise Failed(f"the program ended with {program.returncode}: {output.strip()}")


class Phones:
    """Telephones of a family that boot within a second, on one host at this address."""

    def __init__(self, host, address, family, count, *more):
        self.mac, models, self.element = family
        self.process = subprocess.Popen(
            in_host(host, sys.executable, PHONES, "--count", count, *more, address, self.mac,
                    *models), stdout=subprocess.PIPE, text=True)

    def check(self, program):
        output, _ = self.process.communicate(timeout=PHONE_SECONDS + 20)
        if self.process.returncode != 0:
            raise Failed(f"{self.mac}: no report")
        stories = json.loads(output)
        for story in stories:
            if not self.is_right(story, f"http://{program}:80"):
                raise Failed(f"a phone met {json.dumps(story)}")
        last = max(story["seconds"] for story in stories)
        say(f"  {len(stories)} phones from {self.mac} on, none waited longer than {last:.2f} s")

    def is_right(self, story, url):
        """Whether a telephone met what it should, no answer too many, and what is its own."""
        mac, model, contact = story["mac"], story["model"], story["contact"]
        if model.upper().startswith("KTP") and model != "KTP2200":
            url += "/"
        if self.element:
            wanted = [("SIP/2.0 202 Accepted subscription", ""),
                      (f"NOTIFY sip:{contact} SIP/2.0", url)]
        else:
            wanted = [("SIP/2.0 501 Not Implemented", "")]
        heard = [(text.partition("\r\n")[0], text.partition("\r\n\r\n")[2])
                 for text in story["heard"]]
        if heard != wanted or f"Call-ID: {mac}@{contact}\r\n" not in story["heard"][0]:
            return False
        content = f"<{self.element}>user-{mac}</{self.element}>" if self.element else ""
        return content in story["file"] and bool(content) == bool(story["file"]) and \
            story["seconds"] < PHONE_SECONDS


def run(executable, name, net, more_cards=0, default_route=True):
    """Both families boot together, a telephone that is not in the list among them. `net`: the first
    three bytes of the network that the chosen card and the telephones are in."""
    others = [f"other{number}" for number in range(more_cards)]
    network = Network(name, "phones", *others)
    card, address = f"eth{more_cards}", f"{net}.1"
    cards = [(f"192.0.{number + 2}.1", bridge) for number, bridge in enumerate(others)]
    host = network.add_host("host", *cards, (address, "phones"))
    if default_route:
        ip(host, "route add default via 192.0.2.254")
    program = start_program(executable, host, address)
    started = []
    for last, family, count in ((20, DESK, COUNT // 2), (21, CORDLESS, COUNT // 2),
                                (22, UNKNOWN, 3)):
        own = f"{net}.{last}"
        more = [] if family[2] else ["--url", f"http://{address}"]
        started.append(Phones(network.add_host(f"phones{last}", (own, "phones")), own, family,
                              count, *more))
    for phones in started:
        phones.check(address)
    # The cable is pulled: plug-and-play can be switched off all the same.
    ip(host, f"address flush dev {card}")
    ip(host, f"link set {card} down")
    end_program(program)


RUNS = {
    "a card, no default route": dict(name="noroute", net="192.0.2", default_route=False),
    "two cards, the second chosen": dict(name="second", net="198.51.100", more_cards=1),
}


def main():
    if INSIDE not in sys.argv:
        go_inside()
    # Private to this process: the names of the namespaces, and the networks themselves.
    sh("mount", "-t", "tmpfs", "tmpfs", "/run")
    write_list()
    failures = 0
    for what, case in RUNS.items():
        say(f"{what}: {COUNT} telephones")
        try:
            run(sys.argv[-1], **case)
        except Failed as failure:
            failures += 1
            say(f"  FAILED: {failure}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
