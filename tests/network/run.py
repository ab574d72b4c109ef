#!/usr/bin/env python3
"""The program and phones that boot, each on a host of its own.

Builds networks of hosts (network namespaces with virtual cards on a bridge), runs the program on one
of them and phones on the others, and checks what they get. All lives in namespaces of this process,
which the kernel takes away with it however it ends. Its argument is the provisioning_host executable.
Exit code 77 where such namespaces cannot be made.
"""

import json
import os
import pathlib
import subprocess
import sys

PHONES = pathlib.Path(__file__).resolve().with_name("phones.py")
SKIPPED = 77
INSIDE = "--inside"
COUNT = 100  # phones that boot within a second
CLOSE_SECONDS = 10
PHONE_SECONDS = 10  # from each one's boot to its file

# The first MAC, the models in turn, and the element that holds the user ID, by which the documents
# of the families differ.
DESK = ("0200a7000001", ["KTP2135", "KTP2200", "ktp1610", "KTV3175"], "P35")
CORDLESS = ("0200a7010001", ["DK710"], "P4060")
LIST = "/run/devices.csv"
SWITCH = "switch"


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


def add_host(name, *cards):
    """A host with these cards, each an address and the bridge of the switch that it leads to."""
    sh("ip", "netns", "add", name)
    ip(name, "link set lo up")
    for number, (address, bridge) in enumerate(cards):
        port, card = f"{name}-{number}", f"eth{number}"
        ip(SWITCH, f"link add {port} type veth peer name {card} netns {name}")
        ip(SWITCH, f"link set {port} master {bridge} up")
        ip(name, f"address add {address}/24 brd + dev {card}")
        ip(name, f"link set {card} up")


def write_list():
    with open(LIST, "w", encoding="utf-8") as file:
        file.write("MAC,Product Model,SIP Server,SIP User ID,Password,City,Company\n")
        for first, product in ((DESK[0], "KTP21XX"), (CORDLESS[0], "DK71X")):
            for number in range(COUNT):
                mac = format(int(first, 16) + number, "012x")
                colons = ":".join(mac[at:at + 2] for at in range(0, 12, 2)).upper()
                file.write(f'{colons},{product},sip.example.com,user-{mac},"<&"">",Zürich,\n')


def start_program(executable, host, address):
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen",
                       QT_LOGGING_RULES="default.debug=false")
    program = subprocess.Popen(in_host(host, executable, address, LIST), env=environment, text=True,
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    if program.stdout.readline() != "ready\n":
        program.kill()
        raise Failed("the program did not get ready")
    return program


def start_phones(host, address, family):
    """Those of a family that boot within a second, on one host at this address."""
    return subprocess.Popen(in_host(host, sys.executable, PHONES, "--count", COUNT // 2, address,
                                    family[0], *family[1]), stdout=subprocess.PIPE, text=True)


def check_phones(process, element, url):
    stories = json.loads(process.communicate(timeout=PHONE_SECONDS + 20)[0])
    for story in stories:
        if not is_right(story, element, url):
            raise Failed(f"a phone met {json.dumps(story)}")
    last = max(story["seconds"] for story in stories)
    say(f"  {len(stories)} phones, none waited longer than {last:.2f} s")


def is_right(story, element, url):
    """Whether a phone met what it should, no answer too many, and what is its own."""
    mac, model, contact = story["mac"], story["model"], story["contact"]
    if model.upper().startswith("KTP") and model != "KTP2200":
        url += "/"
    heard = [(text.partition("\r\n")[0], text.partition("\r\n\r\n")[2]) for text in story["heard"]]
    return heard == [("SIP/2.0 202 Accepted subscription", ""),
                     (f"NOTIFY sip:{contact} SIP/2.0", url)] and \
        f"Call-ID: {mac}@{contact}\r\n" in story["heard"][0] and \
        f"<{element}>user-{mac}</{element}>" in story["file"] and \
        story["seconds"] < PHONE_SECONDS


def run(executable, name, net, *more_cards):
    """Both families boot together. `net`: the first three bytes of the network that the chosen card,
    the last, and the phones are in."""
    ip(SWITCH, f"link add {name} up type bridge")
    pc, card, address = f"{name}-pc", f"eth{len(more_cards)}", f"{net}.1"
    add_host(pc, *more_cards, (address, name))
    if more_cards:
        ip(pc, "route add default dev eth0")
    program = start_program(executable, pc, address)
    started = []
    for last, family in ((20, DESK), (21, CORDLESS)):
        own, host = f"{net}.{last}", f"{name}-{last}"
        add_host(host, (own, name))
        started.append((start_phones(host, own, family), family[2]))
    for process, element in started:
        check_phones(process, element, f"http://{address}:80")
    # The cable is pulled: plug-and-play can be switched off all the same.
    ip(pc, f"address flush dev {card}")
    ip(pc, f"link set {card} down")
    program.communicate(timeout=CLOSE_SECONDS)
    if program.returncode != 0:
        raise Failed(f"the program ended with {program.returncode}")


def main():
    if INSIDE not in sys.argv:
        go_inside()
    # Private to this process: the names of the namespaces, and the networks themselves.
    sh("mount", "-t", "tmpfs", "tmpfs", "/run")
    write_list()
    sh("ip", "netns", "add", SWITCH)
    say("a card, no default route")
    run(sys.argv[-1], "one", "192.0.2")
    say("two cards, the second chosen, the route by the first")
    run(sys.argv[-1], "two", "198.51.100", ("192.0.3.1", "one"))


if __name__ == "__main__":
    main()
