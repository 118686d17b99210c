#!/usr/bin/python3
"""The item service on PostgreSQL: beside pgbench on the same tables, two processes beside one, and beside 200 listeners.

    Benchmarks/teams.py [--build DIR] [--seconds N] [--items N] [--versions N] [--listeners N]

The server is one of its own, with all its waiting for the disk. Reads and writes are compared with pgbench's, which runs the same statements
without a service; searches with what EXPLAIN ANALYZE tells of theirs. Ratios count, single times on a shared machine mean little.
"""

import argparse
import concurrent.futures
import json
import pathlib
import random
import re
import statistics
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent / "Tests/Services/Itemhub")]
import postgres  # noqa: E402
import service  # noqa: E402

WORDS = "bracket housing plate shaft bearing flange gasket cover spindle lever pulley bushing washer rivet hinge clamp nozzle".split()
SEARCH = ("SELECT item_id, score FROM (SELECT item_id, -ts_rank(words, query) AS score FROM search, to_tsquery('simple', unaccent('{}')) AS query "
          "WHERE tenant_id = 1 AND words @@ query ORDER BY item_id DESC LIMIT 1000) AS matches ORDER BY score, item_id DESC LIMIT 400")
READ = ("SELECT i.id, i.workspace_id, i.caption, i.description, i.revision, a.name, i.created_at, i.changed_at, f.item_id, (SELECT max(m.role) "
        "FROM held_role m WHERE m.account_id = 1 AND m.workspace_id IN (0, i.workspace_id)) FROM item i JOIN account a ON a.id = i.created_by "
        "LEFT JOIN favourite f ON f.item_id = i.id AND f.account_id = 1 WHERE i.id = :item AND i.tenant_id = 1 AND i.deleted_at IS NULL;")
WRITE = """BEGIN;
INSERT INTO item (tenant_id, workspace_id, caption, description, revision, created_by, created_at, changed_at) VALUES (1, 1, 'Load', '', 1, 1, 0, 0)
RETURNING id \\gset
INSERT INTO search (tenant_id, item_id, words) VALUES (1, :id, setweight(to_tsvector('simple', unaccent('Load')), 'A'));
SELECT pg_advisory_xact_lock(1902537);
INSERT INTO event (tenant_id, workspace_id, account_id, kind, item_id, created_at) VALUES (1, 1, 1, 'item.added', :id, 0);
SELECT pg_notify('itemhub_event', '');
COMMIT;"""


class Bench:
    def __init__(self, options):
        self.options, self.binaries = options, pathlib.Path(options.build) / "root/bin"
        service.PROGRAM = str(self.binaries / "quillet-itemhub")
        self.server = postgres.Server(fsync="on", shared_buffers="256MB", max_wal_size="2GB").initialised().start()
        self.database = self.server.database()
        self.first = service.Service(database=self.server.reach(self.database), limits={"connections": 1024})
        self.first.admin("customer", "add", "acme")
        self.first.admin("workspace", "add", "acme", "Designs")
        self.first.start()
        self.token = self.first.member("acme", "boss", "admin").token

    def close(self):
        self.first.close()
        self.server.close()

    def sql(self, statement):
        return self.server.sql(statement, self.database)

    def fill(self):
        """As the service's own statements would."""
        items, versions = self.options.items, self.options.versions
        words = "ARRAY[" + ",".join(f"'{word}'" for word in WORDS) + "]"
        some = lambda seed: f"({words})[1 + (n * {seed} + n / 7) % {len(WORDS)}]"
        self.sql(f"INSERT INTO item (tenant_id, workspace_id, caption, description, revision, created_by, created_at, changed_at) SELECT 1, 1, "
                 f"{some(3)} || ' ' || {some(5)} || ' ' || n, {some(7)} || ' ' || {some(11)}, 1, 1, n, n FROM generate_series(1, {items}) n")
        self.sql("INSERT INTO search SELECT 1, id, setweight(to_tsvector('simple', unaccent(caption)), 'A') || "
                 "setweight(to_tsvector('simple', unaccent(description)), 'D') FROM item")
        self.sql("INSERT INTO blob VALUES ('x', 1, 0)")
        self.sql(f"INSERT INTO attachment (item_id, name, doc_type, latest, created_by, created_at) SELECT id, 'a', 'x', {versions // items}, 1, 0 FROM item")
        self.sql(f"INSERT INTO version SELECT a.id, n, '', 1, 0, 'x', n - 1 FROM attachment a, generate_series(1, {versions // items}) n")
        self.sql("VACUUM ANALYZE")

    def load(self, port, method, *paths, connections=4):
        told = subprocess.run([self.binaries / "bench_http_load", str(port), str(self.options.seconds), str(connections), method, self.token, *paths],
                              capture_output=True, text=True, check=True)
        return json.loads(told.stdout)

    def pgbench(self, script, connections=4):
        file = self.server.folder / "script"
        file.write_text(script)
        file.chmod(0o644)
        told = self.server.run("pgbench", "-n", "-M", "prepared", "-h", "127.0.0.1", "-p", self.server.port, "-U", postgres.USER, "-c", connections, "-j", 2,
                               "-T", max(1, round(self.options.seconds)), "-f", file, self.database)
        return float(re.search(r"tps = ([\d.]+)", told).group(1))

    def compare(self, name, served, bare):
        """In turn, so that both see the same machine."""
        rounds = [(served()["per_second"], bare()) for _ in range(3)]
        ours, theirs = sorted(rounds, key=lambda pair: pair[0] / pair[1])[1]
        print(f"{name}: {ours:.0f}/s, {ours / theirs:.2f} of {theirs:.0f}/s", flush=True)

    def searches(self):
        client = self.first.client(self.token)
        kinds = {"beginning of a word": lambda: (word := random.choice(WORDS)[:4], f"''{word}'':*"),
                 "two words": lambda: (f"{(two := random.sample(WORDS, 2))[0]}+{two[1]}", f"''{two[0]}'':* & ''{two[1]}'':*"),
                 "a number": lambda: (number := str(random.randrange(100, 10000)), f"''{number}'':*")}
        for name, make in kinds.items():
            ours, theirs = [], []
            for _ in range(15):
                text, query = make()
                begin = time.perf_counter()
                assert client("GET", f"/search?limit=100&q={text}").status == 200
                ours.append(1000 * (time.perf_counter() - begin))
                plan = " ".join(row[0] for row in self.sql("EXPLAIN ANALYZE " + SEARCH.format(query)))
                theirs.append(float(re.search(r"Execution Time: ([\d.]+)", plan).group(1)))
            ours, theirs = statistics.median(ours), statistics.median(theirs)
            print(f"search, {name}: {ours:.1f} ms beside {theirs:.1f} ms of EXPLAIN ANALYZE, {ours / theirs:.1f} times", flush=True)

    def paths(self):
        return [f"/items/{number}" for number in random.Random(1).sample(range(1, self.options.items), 500)]

    def processes(self):
        second = self.first.beside()
        try:
            ratios = []
            for _ in range(3):
                one = self.load(self.first.port, "GET", *self.paths(), connections=8)["per_second"]
                with concurrent.futures.ThreadPoolExecutor(2) as pool:
                    both = sum(told["per_second"] for told in pool.map(
                        lambda port: self.load(port, "GET", *self.paths(), connections=4), (self.first.port, second.port)))
                ratios.append((both / one, one, both))
            ratio, one, both = sorted(ratios)[1]
            print(f"reads of two processes: {both:.0f}/s, {ratio:.2f} of one's {one:.0f}/s", flush=True)
        finally:
            second.close()

    def beside_listeners(self):
        """50 requests a second, of which a tenth change something, without and with listeners."""
        def asked():
            client, times, begin = self.first.client(self.token), [], time.perf_counter()
            for number in range(50 * 6):
                time.sleep(max(0, begin + number / 50 - time.perf_counter()))
                sent = time.perf_counter()
                answer = client("POST", "/workspaces/1/items", {"caption": "Heard"}) if number % 10 == 0 else client("GET", f"/items/{number + 1}")
                assert answer.status < 300
                times.append(1000 * (time.perf_counter() - sent))
            return statistics.median(times), sorted(times)[-len(times) // 50]

        alone = asked()
        heard, streams = [], []
        for _ in range(self.options.listeners):
            client = self.first.client(self.token)
            client.connection.request("GET", "/events?after=now", headers={"Accept": "text/event-stream", "Authorization": f"Bearer {self.token}"})
            streams.append((client, client.connection.getresponse()))
        beside = asked()
        for client, stream in streams:
            client.connection.sock.settimeout(0.3)
            try:
                while line := stream.readline():
                    heard.append(line.startswith(b"id:"))
            except OSError:
                pass
        used = self.sql("SELECT count(*) FROM pg_stat_activity WHERE application_name = 'quillet-itemhub'")[0][0]
        print(f"50 requests a second beside {self.options.listeners} listeners: median {beside[0]:.1f} ms, 98 of 100 within {beside[1]:.1f} ms; without them "
              f"{alone[0]:.1f} ms and {alone[1]:.1f} ms; {sum(heard)} events were heard, of {30 * self.options.listeners}; {used} connections to the database")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default=str(HERE.parent / "build/release"))
    parser.add_argument("--seconds", type=float, default=3)
    parser.add_argument("--items", type=int, default=100_000)
    parser.add_argument("--versions", type=int, default=1_000_000)
    parser.add_argument("--listeners", type=int, default=200)
    bench = Bench(parser.parse_args())
    try:
        begin = time.perf_counter()
        bench.fill()
        print(f"{bench.options.items} items with {bench.options.versions} versions, made in {time.perf_counter() - begin:.0f} s", flush=True)
        bench.compare("reads beside pgbench", lambda: bench.load(bench.first.port, "GET", *bench.paths()),
                      lambda: bench.pgbench(f"\\set item random(1, {bench.options.items - 1})\n" + READ))
        bench.compare("writes beside pgbench", lambda: bench.load(bench.first.port, "POST", "/workspaces/1/items"), lambda: bench.pgbench(WRITE))
        for path, name in (("items?limit=100&order=changed", "by the last change"), ("items?limit=100&order=name", "by the name")):
            print(f"lists of 100, {name}: median {bench.load(bench.first.port, 'GET', '/workspaces/1/' + path)['median_ms']:.1f} ms", flush=True)
        bench.searches()
        bench.processes()
        bench.beside_listeners()
    finally:
        bench.close()


if __name__ == "__main__":
    main()
