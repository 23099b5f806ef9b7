#!/usr/bin/env python3
"""Runs the recipes of examples/scale on three generated logs, one of them compressed, and compares what they give with one process
that reads all of them: every row, and the counts, sums and last instants that are printed.

usage: engines.py KALO VOYAGE FOLDER [--if-installable]
  KALO    the tool; VOYAGE: the generator of logs
  FOLDER  for logs and results
The status is 1 if something differs. With --if-installable it is no error that Slurm cannot be started here.
"""
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import time

import duckdb

import kalo

RECIPES = pathlib.Path(__file__).resolve().parents[2] / "examples/scale"
SIZE = 1 << 20
COLUMNS = ["source", "offset", "time", "latitude", "longitude", "altitude", "quality"]
# The digits of angles that a table of the tool has.
ROWS = ('SELECT source, "offset"::BIGINT, epoch_us(time::TIMESTAMPTZ), round(latitude, 12), round(longitude, 12), '
        "altitude, quality::BIGINT FROM ")


def logs(voyage, folder):
    paths = []
    for day in range(11, 14):
        paths.append(f"{folder}/2026-03-{day}.log")
        with open(paths[-1], "wb") as log:
            subprocess.run([voyage, "--seed", str(day), "--bytes", "2500000",
                            "--start", f"2026-03-{day}T23:00:00"], stdout=log, check=True)
    subprocess.run(["gzip", paths[0]], check=True)  # stays whole
    return [paths[0] + ".gz", *paths[1:]]


class Slurm:
    """A Slurm of this machine alone."""

    def __init__(self, folder):
        self.folder = folder
        host = socket.gethostname().split(".")[0]
        user = subprocess.run(["id", "-un"], capture_output=True, text=True, check=True).stdout.strip()
        os.makedirs(f"{folder}/state")
        self.configuration = f"{folder}/slurm.conf"
        pathlib.Path(self.configuration).write_text(f"""ClusterName=here
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort=16817
SlurmdPort=16818
SlurmUser={user}
SlurmdUser={user}
AuthType=auth/munge
AuthInfo=socket={folder}/munge.socket
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.log
ProctrackType=proctrack/pgid
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
JobAcctGatherType=jobacct_gather/none
MpiDefault=none
SchedulerParameters=batch_sched_delay=0
NodeName={host} NodeAddr=127.0.0.1 CPUs={os.cpu_count()}
PartitionName=all Nodes={host} Default=YES MaxTime=INFINITE
""")
        self.environment = {**os.environ, "SLURM_CONF": self.configuration}

    def __enter__(self):
        key = pathlib.Path(self.folder, "munge.key")
        key.write_bytes(os.urandom(1024))
        key.chmod(0o600)
        self.started = [subprocess.Popen(command, env=self.environment, stderr=subprocess.DEVNULL) for command in (
            ["/usr/sbin/munged", "--foreground", "--force", f"--key-file={key}",
             f"--socket={self.folder}/munge.socket", f"--pid-file={self.folder}/munged.pid",
             f"--log-file={self.folder}/munged.log", f"--seed-file={self.folder}/munge.seed"],
            ["/usr/sbin/slurmctld", "-D"], ["/usr/sbin/slurmd", "-D"])]
        for _ in range(60):
            found = subprocess.run(["sinfo", "--noheader", "--format=%T"], env=self.environment,
                                   capture_output=True, text=True)
            if found.stdout.strip() == "idle":
                break
            time.sleep(1)
        else:
            self.__exit__()
            raise TimeoutError(f"Slurm does not begin: {found.stdout}{found.stderr}")
        return self

    def __exit__(self, *_):
        for process in reversed(self.started):
            process.terminate()
            process.wait()


def parquet(lake):
    return f"read_parquet('{lake}/type=GGA/*/*.parquet', hive_partitioning = true)"


def csv(folder):
    return f"read_csv('{folder}/*.csv', types = {{'time': 'TIMESTAMPTZ'}})"


def withDask(folder, paths, environment):
    subprocess.run([sys.executable, RECIPES / "dask_lake.py", folder, f"{SIZE >> 20}MiB", *paths], check=True)
    return parquet(folder)


def withSpark(folder, paths, environment):
    subprocess.run([sys.executable, RECIPES / "spark_lake.py", folder, f"{SIZE >> 20}MiB", *paths], check=True)
    return parquet(folder)


def withParallel(folder, paths, environment):
    subprocess.run([RECIPES / "parallel.sh", folder, str(SIZE), *paths], env=environment, check=True)
    return csv(folder)


def withSlurm(folder, paths, environment):
    with Slurm(f"{os.path.dirname(folder)}/daemons") as slurm:  # its configuration takes no blanks
        subprocess.run([RECIPES / "slurm.sh", folder, str(SIZE), *paths],
                       env={**environment, "SLURM_CONF": slurm.configuration}, check=True)
    return csv(folder)


def main(tool, voyage, folder, *options):
    folder = os.path.abspath(folder)
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    paths = logs(voyage, folder)
    environment = {**os.environ, "PATH": f"{os.path.dirname(os.path.abspath(tool))}:{os.environ['PATH']}"}
    database = duckdb.connect()
    database.execute("SET TimeZone = 'UTC'")
    whole = kalo.read(paths, types="GGA", columns=COLUMNS)["GGA"]
    database.register("table_", whole)
    database.execute(f"CREATE TABLE whole AS {ROWS} table_")

    def figures(source):
        names = "count(*), sum(latitude), sum(quality), max(time::TIMESTAMPTZ)::VARCHAR"
        return database.execute(f"SELECT {names} FROM {source}").fetchone()

    count, latitudes, qualities, last = figures("table_")
    print(f"one process: {count} positions, latitudes {latitudes:.6f}, qualities {qualities}, last {last}", flush=True)
    differ = 0
    for name, run in ("Dask", withDask), ("Spark", withSpark), ("GNU parallel", withParallel), ("Slurm", withSlurm):
        begin = time.monotonic()
        try:
            source = run(f"{folder}/with {name.split()[-1].lower()}", paths, environment)
        except TimeoutError as error:
            print(f"{name}: not tested: {error}", flush=True)
            differ += "--if-installable" not in options
            continue
        taken = time.monotonic() - begin
        rows = f"{ROWS} {source}"
        missing, = database.execute(f"SELECT count(*) FROM (FROM whole EXCEPT ALL ({rows}))").fetchone()
        others, = database.execute(f"SELECT count(*) FROM (({rows}) EXCEPT ALL FROM whole)").fetchone()
        found = figures(source)
        isSame = (missing, others, found[0], found[2:]) == (0, 0, count, (qualities, last)) and \
            abs(found[1] - latitudes) < 1e-6
        differ += not isSame
        print(f"{name}: {found[0]} positions, latitudes {found[1]:.6f}, qualities {found[2]}, last {found[3]}; "
              f"{missing} missing, {others} others; {taken:.1f} s", flush=True)
    sys.exit(bool(differ) or count == 0)


main(*sys.argv[1:])
