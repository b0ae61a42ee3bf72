#!/usr/bin/env python3
"""Runs a Windows program under Wine, with serial lines for the simulated module.

    run_in_wine.py [--expect TEXT] PROGRAM ARGUMENT...
    run_in_wine.py --finish PREFIX

The Wine prefix is WINEPREFIX or else wine-prefix in the build tree of the program (of the current folder for a program of
Wine's own, such as reg); it is made on first use. For the time of the run, four pairs of COM ports that are wired to
each other are there, and TALVEK_SIM_LINES names them ("COM128=COM129;..."). Each port is a pseudo-terminal; octets are
passed between the two of a pair. When the program closes the first port of a pair, the second is hung up as soon as what
arrived there has been read, and both are there anew at once.

The program's standard streams and its exit status are this one's; in its output CR LF becomes LF. A program that cannot
start under Wine prints nothing and exits with 0, so an expected text must be in the output: TEXT, or the closing line of
the test runner when PROGRAM is talvek_*tests.exe.

--finish ends what runs in a prefix and removes it. It fails when something of it is left running.
"""
import fcntl
import os
import re
import select
import selectors
import shutil
import signal
import struct
import subprocess
import sys
import time
import tty

PAIRS = 4
FIRST_PORT = 128  # Wine removes and makes links with low numbers at will
SLOTS = 16        # runs at a time in one prefix; the last port is COM255
SERVER_LIMIT_S = 30
READ_LIMIT_S = 2  # for the client to read what came before a hang-up
BUFFER_LIMIT = 1 << 16
TESTS = re.compile(r"talvek_\w*tests\.exe$", re.IGNORECASE)
CLOSING_LINE = re.compile(rb"^\[  (PASSED|FAILED)  \]|tests ran", re.MULTILINE)


def tool(name, *others):
    for candidate in (name, *others):
        path = shutil.which(candidate)
        if path:
            return path
    sys.exit(f"run_in_wine.py: {name} is not installed")


def wine():
    return tool("wine64", "/usr/lib/wine/wine64", "wine")


def wine_server():
    return tool("wineserver", "/usr/lib/wine/wineserver")


def wine_environment(prefix):
    environment = {**os.environ, "WINEPREFIX": prefix, "WINEDLLOVERRIDES": "mscoree,mshtml="}
    environment.setdefault("WINEDEBUG", "-all")
    return environment


def default_prefix(program):
    """In the outermost CMake build tree around the program."""
    folder = os.path.dirname(os.path.abspath(program)) if os.sep in program else os.getcwd()
    tree = None
    while folder != os.path.dirname(folder):
        if os.path.exists(os.path.join(folder, "CMakeCache.txt")):
            tree = folder
        folder = os.path.dirname(folder)
    if not tree:
        sys.exit(f"run_in_wine.py: {program} lies in no build tree: set WINEPREFIX")
    return os.path.join(tree, "wine-prefix")


def locked(path, wait):
    """An open file that this process alone has locked; None when it is another's."""
    lock = open(path, "w")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | (0 if wait else fcntl.LOCK_NB))
    except BlockingIOError:
        lock.close()
        return None
    return lock


def start_server(prefix):
    """A server that Wine starts by itself leads a session, so that a serial port becomes its controlling terminal: when
    that is hung up, the server is sent a signal upon which it prints all that it knows. This one leads none. It ends a
    few seconds after the last program of the prefix."""
    server, environment = wine_server(), wine_environment(prefix)
    runs = [server, "-k0"]
    deadline = time.monotonic() + SERVER_LIMIT_S
    while subprocess.run(runs, env=environment, stderr=subprocess.DEVNULL, check=False).returncode != 0:
        subprocess.run(["sh", "-c", '"$0" -f -p3 </dev/null >/dev/null 2>&1 &', server], env=environment, check=True,
                       start_new_session=True)
        time.sleep(0.02)
        if time.monotonic() > deadline:
            sys.exit(f"run_in_wine.py: no Wine server comes up in {prefix}")


def make_prefix(prefix):
    ready = os.path.join(prefix, "talvek-ready")
    if os.path.exists(ready):
        return
    os.makedirs(prefix, exist_ok=True)
    lock_path = prefix + ".lock"
    with locked(lock_path, wait=True):
        if not os.path.exists(ready):
            start_server(prefix)
            done = subprocess.run([wine(), "wineboot", "-i"],
                                  env=wine_environment(prefix), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
            if done.returncode != 0:
                sys.exit(f"run_in_wine.py: no prefix can be made in {prefix}: wineboot exits with {done.returncode}")
            open(ready, "w").close()


class Terminal:
    """A pseudo-terminal that passes octets on as they are. Its name is what `slave` opens."""
    GET_NUMBER, SET_LOCK = 0x80045430, 0x40045431

    def __init__(self):
        self.master = os.open("/dev/ptmx", os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK | os.O_CLOEXEC)
        fcntl.ioctl(self.master, self.SET_LOCK, struct.pack("i", 0))
        number, = struct.unpack("i", fcntl.ioctl(self.master, self.GET_NUMBER, struct.pack("i", 0)))
        self.name = f"/dev/pts/{number}"
        tty.setraw(self.master)
        self.pending = b""  # not written yet, because the reader is slow

    def read(self):
        """None when the other side has been opened and closed again, and all that it wrote has been read."""
        try:
            return os.read(self.master, 65536)
        except BlockingIOError:
            return b""
        except OSError:
            return None

    def write(self, octets):
        self.pending += octets
        try:
            while self.pending:
                self.pending = self.pending[os.write(self.master, self.pending):]
        except OSError:
            pass

    def close(self):
        os.close(self.master)


class ClientTerminal(Terminal):
    """The client's end is held open: a client that closes it is no hang-up, and it tells what is still unread."""

    def __init__(self):
        super().__init__()
        self.slave = os.open(self.name, os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK | os.O_CLOEXEC)
        self.deadline = None

    def unread(self):
        waiting = select.poll()
        waiting.register(self.slave, select.POLLIN)
        return bool(self.pending) or any(events & select.POLLIN for _, events in waiting.poll(0))

    def close(self):
        os.close(self.slave)
        super().close()


class Pair:
    """Two COM ports that are wired to each other."""

    def __init__(self, selector, prefix, port):
        self.selector, self.prefix = selector, prefix
        self.ports = (port, port + 1)
        self.leaving = []
        self.make()

    def names(self):
        return "COM{}=COM{}".format(*self.ports)

    def make(self):
        self.module, self.client = Terminal(), ClientTerminal()
        for port, terminal in zip(self.ports, (self.module, self.client)):
            fresh = os.path.join(self.prefix, f"talvek-com{port}")
            if os.path.lexists(fresh):
                os.unlink(fresh)
            os.symlink(terminal.name, fresh)
            os.rename(fresh, self.link(port))
            self.selector.register(terminal.master, selectors.EVENT_READ, self)

    def link(self, port):
        return os.path.join(self.prefix, "dosdevices", f"com{port}")

    def move(self):
        for source, target in ((self.client, self.module), (self.module, self.client)):
            if len(target.pending) > BUFFER_LIMIT:
                continue
            octets = source.read()
            if octets is not None:
                target.write(octets)
            elif source is self.module:
                return self.hang_up()

    def hang_up(self):
        self.selector.unregister(self.module.master)
        self.selector.unregister(self.client.master)
        self.module.close()
        self.client.deadline = time.monotonic() + READ_LIMIT_S
        self.leaving.append(self.client)
        self.make()

    def step(self):
        """What is not told by a readable terminal. Returns whether there is more of it to come soon."""
        for terminal in (self.module, self.client, *self.leaving):
            terminal.write(b"")
        for terminal in [t for t in self.leaving if not t.unread() or time.monotonic() > t.deadline]:
            self.leaving.remove(terminal)
            terminal.close()
        return bool(self.leaving or self.module.pending or self.client.pending)

    def remove(self):
        for port in self.ports:
            os.unlink(self.link(port))


def take_slot(prefix):
    while True:
        for slot in range(SLOTS):
            lock = locked(os.path.join(prefix, f"talvek-slot-{slot}"), wait=False)
            if lock:
                return slot, lock
        time.sleep(0.05)


class Stream:
    """An output of the program, passed on with LF for CR LF."""

    def __init__(self, selector, pipe, target):
        self.pipe, self.target = pipe, target
        self.held = b""  # a CR whose next octet is not known yet
        self.selector, self.text = selector, bytearray()
        os.set_blocking(pipe.fileno(), False)
        selector.register(pipe, selectors.EVENT_READ, self)

    def move(self):
        """Returns whether there was something."""
        try:
            octets = os.read(self.pipe.fileno(), 65536)
        except BlockingIOError:
            return False
        if not octets:
            if self.pipe.fileno() in self.selector.get_map():
                self.selector.unregister(self.pipe)
            return False
        octets = self.held + octets
        self.held = b"\r" if octets.endswith(b"\r") else b""
        self.put(octets[:len(octets) - len(self.held)].replace(b"\r\n", b"\n"))
        return True

    def finish(self):
        while self.move():
            pass
        self.put(self.held)

    def put(self, octets):
        self.text += octets
        try:
            self.target.write(octets)
            self.target.flush()
        except BrokenPipeError:
            pass


def forward_signals(child):
    def forward(number, _):
        child.send_signal(number)
        signal.alarm(5)

    signal.signal(signal.SIGINT, forward)
    signal.signal(signal.SIGTERM, forward)
    signal.signal(signal.SIGALRM, lambda *_: child.kill())


def run_with_lines(arguments, environment, prefix, first_port):
    """Returns the exit status and what the program printed on standard output."""
    selector = selectors.DefaultSelector()
    pairs = []
    try:
        for number in range(PAIRS):
            pairs.append(Pair(selector, prefix, first_port + 2 * number))
        environment["TALVEK_SIM_LINES"] = ";".join(pair.names() for pair in pairs)
        child = subprocess.Popen([wine(), *arguments], env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        forward_signals(child)
        # Not the end of the output: Wine's own services, which outlive the program, hold it open too.
        ended = os.pidfd_open(child.pid)
        selector.register(ended, selectors.EVENT_READ)
        streams = [Stream(selector, child.stdout, sys.stdout.buffer), Stream(selector, child.stderr, sys.stderr.buffer)]
        soon = False
        while True:
            ready = selector.select(0.001 if soon else None)
            for key, _ in ready:
                if key.data:
                    key.data.move()
            if any(key.fd == ended for key, _ in ready):
                break
            soon = any([pair.step() for pair in pairs])
        for stream in streams:
            stream.finish()
        status = child.wait()
        return (128 - status if status < 0 else status), bytes(streams[0].text)
    finally:
        for pair in pairs:
            pair.remove()


def run(expected, arguments):
    prefix = os.path.abspath(os.environ.get("WINEPREFIX") or default_prefix(arguments[0]))
    make_prefix(prefix)
    start_server(prefix)
    slot, lock = take_slot(prefix)
    with lock:
        status, text = run_with_lines(arguments, wine_environment(prefix), prefix, FIRST_PORT + slot * 2 * PAIRS)
    if expected is not None:
        missing = expected.encode() not in text
    elif not TESTS.search(arguments[0]) or "--help" in arguments:
        missing = False
    elif "--gtest_list_tests" in arguments:
        missing = not text
    else:
        missing = not CLOSING_LINE.search(text)
    if missing:
        print(f"run_in_wine.py: {arguments[0]} exits with {status}, but its output lacks what shows that it ran",
              file=sys.stderr)
    return status or int(missing)


def processes_of(prefix):
    """(identifier, command line) of what runs in a prefix."""
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open(f"/proc/{entry}/environ", "rb") as file:
                variables = file.read().split(b"\0")
            with open(f"/proc/{entry}/cmdline", "rb") as file:
                command = file.read().replace(b"\0", b" ").decode(errors="replace").strip()
            program = os.readlink(f"/proc/{entry}/exe")
        except OSError:
            continue  # it has ended, or is somebody else's
        if f"WINEPREFIX={prefix}".encode() in variables and "wine" in os.path.basename(program):
            found.append((int(entry), command))
    return found


def await_none(list_processes, seconds):
    deadline = time.monotonic() + seconds
    while (left := list_processes()) and time.monotonic() < deadline:
        time.sleep(0.05)
    return left


def is_program(command):
    """Not one of Wine's own, which end by themselves a moment after the last program."""
    return not re.match(r"c:\\windows\\|\S*wineserver", command, re.IGNORECASE)


def finish(prefix):
    prefix = os.path.abspath(prefix)
    if not os.path.isdir(prefix):
        return 0
    left = await_none(lambda: [p for p in processes_of(prefix) if is_program(p[1])], 5)
    environment = wine_environment(prefix)
    for option in ("-k", "-w"):
        subprocess.run([wine_server(), option], env=environment, check=False, stderr=subprocess.DEVNULL)
    left += [p for p in await_none(lambda: processes_of(prefix), 10) if p not in left]
    shutil.rmtree(prefix)
    if os.path.exists(prefix + ".lock"):
        os.unlink(prefix + ".lock")
    for number, command in left:
        print(f"left running: {number} {command}")
    return 1 if left else 0


def main(arguments):
    if len(arguments) == 2 and arguments[0] == "--finish":
        return finish(arguments[1])
    expected = None
    if len(arguments) >= 2 and arguments[0] == "--expect":
        expected, arguments = arguments[1], arguments[2:]
    if not arguments or arguments[0].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    return run(expected, arguments)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
