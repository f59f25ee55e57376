#!/usr/bin/env python3
"""Start-up and idle memory of OrvexControl against a bare Qt Widgets window.

Both run offscreen against the same orvex-sim (127.0.0.91), interleaved, ROUNDS
times each. Start-up: from just before the process is started to the emulator
logging the first command it receives. Idle memory: resident and proportional
set size IDLE seconds after that first command.
    bench/startup.py [BUILD_DIR] [--rounds N] [--idle S]
"""
import os
import re
import shutil
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import threading
import time

HOST = "127.0.0.91"
args = [a for i, a in enumerate(sys.argv[1:], 1) if not a.startswith("--") and not sys.argv[i - 1].startswith("--")]
build = os.path.abspath(args[0] if args else os.path.join(os.path.dirname(__file__), "..", "build"))
rounds = int(sys.argv[sys.argv.index("--rounds") + 1]) if "--rounds" in sys.argv else 3
idle = float(sys.argv[sys.argv.index("--idle") + 1]) if "--idle" in sys.argv else 3.0

work = tempfile.mkdtemp(prefix="orvex-startup-")
procs = []


def cleanup():
    for p in procs:
        if p.poll() is None:
            p.kill()
            p.wait()
    shutil.rmtree(work, ignore_errors=True)


def breakdown(pid):
    """Resident KiB by kind of mapping: where the memory over the bare window is."""
    kinds = {}
    kind = "anonymous and heap"
    with open(f"/proc/{pid}/smaps") as f:
        for line in f:
            if re.match(r"^[0-9a-f]+-[0-9a-f]+ ", line):
                parts = line.split()
                path = parts[5] if len(parts) > 5 else ""
                name = os.path.basename(path)
                if not path or path.startswith("["):
                    kind = "anonymous and heap"
                elif re.search(r"\.(ttf|ttc|otf|pcf)(\.gz)?$", name):
                    kind = "font files"
                elif name.startswith("libQt5"):
                    kind = "Qt libraries"
                elif re.match(r"lib(sqlite3|harfbuzz|freetype|fontconfig|pcre2|png)", name):
                    kind = "SQLite, text and image libraries"
                elif ".so" in name:
                    kind = "other libraries"
                elif name in ("OrvexControl", "bench_bare_window"):
                    kind = "the program"
                else:
                    kind = "other files"
            elif line.startswith("Rss:"):
                kinds[kind] = kinds.get(kind, 0) + int(line.split()[1])
    return kinds


def memory(pid):
    """(RSS, PSS) in MiB."""
    rss = pss = 0
    with open(f"/proc/{pid}/smaps_rollup") as f:
        for line in f:
            if line.startswith("Rss:"):
                rss = int(line.split()[1])
            elif line.startswith("Pss:"):
                pss = int(line.split()[1])
    return rss / 1024, pss / 1024


try:
    sim = subprocess.Popen([f"{build}/bin/orvex-sim", "--host", HOST, "--port", "0", "--verbose"],
                           stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    procs.append(sim)
    line = sim.stdout.readline()
    m = re.search(r"listening on [\d.]+:(\d+)", line)
    if not m:
        sys.exit(f"orvex-sim did not start: {line!r} {sim.stderr.read() if sim.poll() is not None else ''}")
    port = m.group(1)

    # Every command the emulator logs, with the time its line arrived.
    commands = []
    lock = threading.Condition()

    def read_log():
        for text in sim.stderr:
            if "cmd:" in text:
                with lock:
                    commands.append(time.monotonic())
                    lock.notify_all()

    threading.Thread(target=read_log, daemon=True).start()

    # The application's folder: no-login mode, the emulator's address.
    shutil.copy(f"{build}/bin/OrvexControl", work)
    db = sqlite3.connect(os.path.join(work, "project.db"))
    db.execute("create table loginmodel( id integer primary key, model integer not null)")
    db.execute("insert into loginmodel values(1,1)")
    db.commit()
    db.close()
    runtime = os.path.join(work, "runtime")
    os.mkdir(runtime, 0o700)
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", XDG_RUNTIME_DIR=runtime)

    def run(argv):
        with open(os.path.join(work, "config.ini"), "w") as ini:
            ini.write(f"[NetWork]\nIp={HOST}\nPort={port}\n[Language]\nlanguage=1\n")
        with lock:
            seen = len(commands)
        start = time.monotonic()
        p = subprocess.Popen(argv, cwd=work, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        procs.append(p)
        with lock:
            if not lock.wait_for(lambda: len(commands) > seen, timeout=20):
                sys.exit(f"{argv[0]} sent nothing")
            first = commands[seen]
        time.sleep(idle)
        rss, pss = memory(p.pid)
        kinds = breakdown(p.pid)
        p.terminate()
        p.wait()
        return (first - start) * 1000, rss, pss, kinds

    app, bare = [], []
    for _ in range(rounds):
        app.append(run([os.path.join(work, "OrvexControl")]))
        bare.append(run([f"{build}/bin/bench_bare_window", HOST, port]))

    def median(rows, i):
        return statistics.median(r[i] for r in rows)

    for name, rows in (("OrvexControl", app), ("bare window", bare)):
        print(f"{name:13} start to first query: {', '.join(f'{r[0]:.0f}' for r in rows)} ms "
              f"(median {median(rows, 0):.0f}); after {idle:.0f} s idle RSS {median(rows, 1):.1f} MiB, "
              f"PSS {median(rows, 2):.1f} MiB")
    # Resident memory by kind, from the last run of each.
    app_kinds, bare_kinds = app[-1][3], bare[-1][3]
    print("idle RSS by kind (MiB)      OrvexControl  bare window  difference")
    for kind in sorted(set(app_kinds) | set(bare_kinds), key=lambda k: bare_kinds.get(k, 0) - app_kinds.get(k, 0)):
        a, b = app_kinds.get(kind, 0) / 1024, bare_kinds.get(kind, 0) / 1024
        print(f"  {kind:32} {a:6.1f} {b:12.1f} {a - b:+11.1f}")
    print(f"RESULT startup_vs_bare_window {median(app, 0) / median(bare, 0):.2f} x "
          f"(+{median(app, 0) - median(bare, 0):.0f} ms; target <= 1.5)")
    print(f"RESULT idle_rss_vs_bare_window {median(app, 1) / median(bare, 1):.2f} x "
          f"(+{median(app, 1) - median(bare, 1):.1f} MiB; target <= 1.3, or the reasons: docs/benchmarks.md)")
finally:
    cleanup()
