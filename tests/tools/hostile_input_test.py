"""gait-statistics with walks that are too long, tables without end, signals, and outputs that
cannot be written.

    hostile_input_test.py PROGRAM [TestCase...]
"""

import functools
import os
import pathlib
import pwd
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

import gait_statistics_test as program
from gait_statistics_test import (
    BOTH_FEET,
    FOOT_CYCLES,
    LEFT_FOOT,
    MEASURED,
    ProgramTest,
    run,
    without_findings,
)


def write_long_walk(folder, strides, gct=None):
    """A walk of two feet of which nothing but the cycle duration was measured."""
    gct = gct or [1.0] * strides
    nothing_else = "," * (len(MEASURED) - 2)
    folder.mkdir()
    (folder / "recording.csv").write_text(
        "foot,sampling_rate,signal_1_samples,signal_2_samples\n"
        f"left,100,{strides},{strides}\n"
        f"right,100,{strides},{strides}\n"
    )
    with open(folder / "foot_cycles.csv", "w", encoding="utf-8") as table:
        table.write(FOOT_CYCLES + "\n")
        for foot in ("left", "right"):
            table.writelines(
                f"{foot},{i},{i},{i},,{gct[i]}{nothing_else}\n" for i in range(strides)
            )
    with open(folder / "feet_cycles.csv", "w", encoding="utf-8") as table:
        table.write("index,gct,ds,right_index,left_index\n")
        table.writelines(f"{i},1.0,,{i},{i}\n" for i in range(strides))
    (folder / "exclusions.csv").write_text("cycles,list,index,reason\n")
    return folder


def order_against_the_sort(count):
    """Values of which a quicksort that takes the middle one as pivot always takes the largest."""
    values = []
    for number in range(count):
        values.append(number)
        middle = number // 2
        values[middle], values[-1] = number, values[middle]
    return values


class EndlessTable:
    """A pipe in place of a table, into which a text is written for as long as somebody reads."""

    def __init__(self, table, beginning, text):
        table.unlink()
        os.mkfifo(table)
        self.table, self.beginning, self.text = table, beginning.encode(), text.encode() * 1000

    def __enter__(self):
        self.writer = threading.Thread(target=self.write)
        self.writer.start()

    def __exit__(self, *_):
        # A program that ended before it opened the pipe leaves the writer waiting for a reader.
        while self.writer.is_alive():
            os.close(os.open(self.table, os.O_RDONLY | os.O_NONBLOCK))
            self.writer.join(timeout=0.1)

    def write(self):
        pipe = os.open(self.table, os.O_WRONLY)
        try:
            os.write(pipe, self.beginning)
            while True:
                os.write(pipe, self.text)
        except BrokenPipeError:
            os.close(pipe)


class HostileTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.out = self.folder / "out"
        self.out.mkdir()
        self.file = self.out / "result"
        self.file.write_text("old")

    def copy_of_a_walk(self):
        return pathlib.Path(shutil.copytree(BOTH_FEET, self.folder / "walk"))

    def start(self, *arguments, prefix=(), **options):
        process = subprocess.Popen(
            [*prefix, program.PROGRAM, *map(str, arguments)],
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            encoding="utf-8",
            **options,
        )

        def end():
            process.kill()
            process.wait()
            process.stdout.close()
            process.stderr.close()

        self.addCleanup(end)
        return process

    def without_nameless_files(self):
        """Arguments in front of the program's, so that it cannot name a file that has no name.

        That takes /proc, which a mount namespace of its own may lack.
        """
        as_root = [] if os.geteuid() == 0 else ["--map-root-user"]
        prefix = [
            "unshare",
            *as_root,
            "--mount",
            "sh",
            "-c",
            'mount -t tmpfs tmpfs /proc && exec "$@"',
            "sh",
        ]
        if subprocess.run([*prefix, "true"], capture_output=True, check=False).returncode != 0:
            self.skipTest("nothing can be mounted here")
        return prefix

    def peak_memory(self, *arguments):
        """What the program says, its exit code, and the most memory that it held (bytes)."""
        process = self.start(*arguments)
        text = process.stderr.read()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        return text, process.returncode, 1024 * usage.ru_maxrss

    def check_nothing_was_written(self):
        self.assertEqual(os.listdir(self.out), ["result"])
        self.assertEqual(self.file.read_text(), "old")

    def as_nobody(self):
        """Options to run the program as somebody who may read and write little."""
        self.folder.chmod(0o755)
        if os.geteuid() != 0:
            return {}
        nobody = pwd.getpwnam("nobody")

        def drop():
            os.setgroups([])
            os.setgid(nobody.pw_gid)
            os.setuid(nobody.pw_uid)

        try:
            run("--version", preexec_fn=drop)
        except PermissionError:
            self.skipTest("the program lies where only its owner may run it")
        return {"preexec_fn": drop}


class LongWalk(HostileTest):
    def test_is_announced_with_an_estimate_before_it_is_computed(self):
        process = self.start(write_long_walk(self.folder / "long", 40000))
        self.assertRegex(
            process.stderr.readline(),
            f"^note: {self.folder}/long: the statistics of 40000 strides a foot will "
            r"take about \d+ (seconds|minutes|hours): their time grows with the "
            r"square of the strides\. Ctrl-C ends the program; --max-strides refuses "
            r"such walks\.\n$",
        )
        self.assertIsNone(process.poll())

    def test_that_takes_no_time_is_not_announced(self):
        self.output(write_long_walk(self.folder / "short", 500))

    def test_is_refused_beyond_a_limit_in_little_memory(self):
        long = write_long_walk(self.folder / "long", 40000)
        message, exit_code, memory = self.peak_memory(
            "--max-strides", 1000, "--output", self.file, long
        )
        self.assertEqual(
            message,
            "".join(
                f"{long}/{what}, expected at most 1000, the limit that was set\n"
                for what in (
                    "foot_cycles.csv: found 40000 strides of the left foot",
                    "foot_cycles.csv: found 40000 strides of the right foot",
                    "feet_cycles.csv: found 40000 cycles of both feet",
                )
            ),
        )
        self.assertEqual(exit_code, 1)
        self.check_nothing_was_written()
        self.assertLess(memory, self.peak_memory(BOTH_FEET)[2] + (6 << 20))

    def test_made_to_exhaust_the_stack_is_computed(self):
        walk = write_long_walk(self.folder / "walk", 7000, order_against_the_sort(7000))

        def leave_little_stack():
            resource.setrlimit(
                resource.RLIMIT_STACK, (192 << 10, resource.getrlimit(resource.RLIMIT_STACK)[1])
            )

        for arguments in ([walk], ["--jobs", 2, walk, LEFT_FOOT]):
            result = run("--format", "csv", *arguments, preexec_fn=leave_little_stack)
            self.assertEqual(result.returncode, 0)
            self.assertIn("3499.5", result.stdout)

    def test_is_not_limited_by_something_else_than_a_number_from_1(self):
        for limit in ("0", "-1", "many", "1.5", "99999999999999999999999", ""):
            result = run("--max-strides", limit, LEFT_FOOT)
            self.assertEqual((result.returncode, result.stdout), (2, ""), limit)
            self.assertRegex(
                result.stderr, "^gait-statistics: .*--max-strides.*\nTry gait-statistics --help.\n$"
            )


class MillionStrides(HostileTest):
    """Half a million of each foot."""

    def setUp(self):
        super().setUp()
        self.walk = write_long_walk(self.folder / "walk", 500000)

    def test_are_read_in_memory_in_proportion_and_announced(self):
        process = self.start("--output", self.file, self.walk)
        self.assertIn("500000 strides a foot will take about", process.stderr.readline())
        status = pathlib.Path(f"/proc/{process.pid}/status").read_text(encoding="ascii")
        peak = next(line for line in status.splitlines() if line.startswith("VmHWM:"))
        process.terminate()
        self.assertEqual(process.wait(), -signal.SIGTERM)
        self.check_nothing_was_written()
        self.assertLess(1024 * int(peak.split()[1]), 512 * 1000000)


class Interruption(HostileTest):
    SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT)

    def check_ends(self, process, number):
        """A signal ends the program at once, as the shell is told, without a word or a trace."""
        process.send_signal(number)
        start = time.monotonic()
        out, err = process.communicate(timeout=30)
        self.assertLess(time.monotonic() - start, 2)
        self.assertEqual((process.returncode, out, without_findings(err)), (-number, "", []))
        self.check_nothing_was_written()

    def test_while_waiting_for_a_table(self):
        walk = self.copy_of_a_walk()
        (walk / "exclusions.csv").unlink()
        os.mkfifo(walk / "exclusions.csv")
        for number in self.SIGNALS:
            process = self.start("--output", self.file, walk)
            time.sleep(0.05)
            self.check_ends(process, number)

    def test_while_reading_at_full_speed(self):
        walk = self.copy_of_a_walk()
        endless = EndlessTable(
            walk / "exclusions.csv", "cycles,list,index,reason\n", "feet,excluded_1_fallback,0,\n"
        )
        for number in self.SIGNALS:
            process = self.start("--output", self.file, walk)
            with endless:
                time.sleep(0.05)
                self.check_ends(process, number)

    def test_while_computing(self):
        long = write_long_walk(self.folder / "long", 40000)
        for walks in ([long], ["--jobs", 2, LEFT_FOOT, long, BOTH_FEET]):
            for number, moment in zip(self.SIGNALS, (0, 0.01, 0.1, 0.4)):
                process = self.start("--output", self.file, *walks)
                while not process.stderr.readline().startswith("note: "):
                    pass
                time.sleep(moment)
                self.check_ends(process, number)

    def test_while_a_pipe_for_the_output_has_no_reader(self):
        os.mkfifo(self.folder / "pipe")
        process = self.start("--output", self.folder / "pipe", BOTH_FEET)
        time.sleep(0.1)
        self.check_ends(process, signal.SIGINT)

    def large_output(self):
        walks = [write_long_walk(self.folder / f"walk_{i}", 500) for i in range(12)]
        arguments = ["--format", "json", "--output", self.file, *walks]
        self.output(*arguments)
        return arguments, self.file.read_bytes()

    def has_written(self, process):
        """Whether the program has written anything: into a file that has no name yet."""
        try:
            files = [
                f"/proc/{process.pid}/fd/{number}"
                for number in os.listdir(f"/proc/{process.pid}/fd")
            ]
            return any(
                os.readlink(file).startswith(f"{self.out}/#") and os.stat(file).st_size > 0
                for file in files
            )
        except (FileNotFoundError, PermissionError):
            return False  # it has ended, or closed the file

    def has_a_temporary_file(self, _):
        return len(os.listdir(self.out)) > 1

    def interrupt_while(self, is_writing, arguments, new, **options):
        """Sends each signal while the output is being written.

        The old output stays, or the whole new one is there, and nothing else.
        """
        hits = 0
        for number in self.SIGNALS:
            self.file.write_text("old")
            process = self.start(*arguments, **options)
            while process.poll() is None and not is_writing(process):
                pass
            # Stopped, the program cannot be done before the signal is there.
            process.send_signal(signal.SIGSTOP)
            hits += is_writing(process)
            process.send_signal(number)
            process.send_signal(signal.SIGCONT)
            self.assertIn(process.wait(timeout=30), (-number, 0))
            self.assertEqual(os.listdir(self.out), ["result"])
            self.assertIn(self.file.read_bytes(), (b"old", new))
        self.assertGreater(hits, 0, "no signal came while the output was written")

    def test_while_writing_leaves_the_old_output_or_the_whole_new_one(self):
        arguments, new = self.large_output()
        for jobs in (1, 2):
            self.interrupt_while(self.has_written, ["--jobs", jobs, *arguments], new)

    def test_removes_the_temporary_name_of_an_output_that_needs_one(self):
        arguments, new = self.large_output()
        for jobs in (1, 2):
            self.interrupt_while(
                self.has_a_temporary_file,
                ["--jobs", jobs, *arguments],
                new,
                prefix=self.without_nameless_files(),
            )

    def test_at_any_moment_leaves_the_old_output_or_the_whole_new_one(self):
        start = time.monotonic()
        arguments, new = self.large_output()
        whole_run = time.monotonic() - start
        codes = set()
        for eighth in range(9):
            self.file.write_text("old")
            process = self.start(*arguments)
            time.sleep(whole_run * eighth / 8)
            process.send_signal(signal.SIGINT)
            codes.add(process.wait(timeout=30))
            self.assertEqual(os.listdir(self.out), ["result"])
            self.assertIn(self.file.read_bytes(), (b"old", new) if process.returncode else (new,))
        self.assertLessEqual(codes, {0, -signal.SIGINT})
        self.assertIn(-signal.SIGINT, codes)


class Tables(HostileTest):
    def refused(self, walk, message, **options):
        result = run("--output", self.file, walk, **options)
        self.assertEqual(
            (result.returncode, result.stdout, result.stderr), (1, "", f"{walk}/{message}\n")
        )
        self.check_nothing_was_written()

    def test_with_a_line_without_end(self):
        walk = self.copy_of_a_walk()
        with EndlessTable(walk / "recording.csv", "", "left"):
            self.refused(
                walk,
                "recording.csv:1: found a row of more than 1048576 bytes, expected "
                "a shorter one: is a quotation mark left open?",
            )

    def test_that_may_not_be_read(self):
        walk = self.copy_of_a_walk()
        (walk / "feet_cycles.csv").chmod(0)
        self.refused(
            walk,
            "feet_cycles.csv: found a file that cannot be read (Permission denied), "
            "expected a table",
            **self.as_nobody_who_may_write(),
        )

    def test_in_a_folder_that_may_not_be_looked_into_are_no_walk_to_offer(self):
        study = self.folder / "study"
        (study / "closed").mkdir(parents=True)
        (study / "closed").chmod(0)
        options = self.as_nobody()
        result = run(study, **options)
        self.assertEqual(
            result.stderr,
            f"{study}: found neither recording.csv nor "
            "foot_cycles.csv, expected a walk folder with both\n",
        )
        result = run("--recursive", study, **options)
        (study / "closed").chmod(0o755)
        self.assertEqual(
            result.stderr,
            f"{study}/closed: found a folder that cannot be read "
            "(Permission denied), expected a walk folder\n",
        )

    def as_nobody_who_may_write(self):
        options = self.as_nobody()
        self.out.chmod(0o777)
        self.file.chmod(0o666)
        return options


class Output(HostileTest):
    def fails(self, what, *arguments, **options):
        result = run(*arguments, BOTH_FEET, **options)
        self.assertEqual(
            (result.returncode, result.stdout, without_findings(result.stderr)),
            (1, "", [f"gait-statistics: cannot write {what}"]),
        )

    def test_in_a_folder_that_may_not_be_written(self):
        nobody = self.as_nobody()
        self.file.chmod(0o666)
        self.out.chmod(0o555)
        self.fails(f"{self.file}: Permission denied", "--output", self.file, **nobody)
        self.fails(f"{self.out}/new: Permission denied", "--output", self.out / "new", **nobody)
        self.check_nothing_was_written()
        self.out.chmod(0o755)

    def test_that_may_not_be_written(self):
        nobody = self.as_nobody()
        self.out.chmod(0o777)
        self.file.chmod(0o444)
        self.fails(f"{self.file}: Permission denied", "--output", self.file, **nobody)
        self.check_nothing_was_written()

    def test_is_kept_at_every_size_at_which_writing_stops(self):
        for walks in ([], ["--jobs", 2, LEFT_FOOT]):
            size = len(self.output(*walks, BOTH_FEET))
            for limit in (0, 1, size // 2, size - 1):
                stop = functools.partial(resource.setrlimit, resource.RLIMIT_FSIZE, (limit, limit))
                self.fails(
                    f"{self.file}: File too large", *walks, "--output", self.file, preexec_fn=stop
                )
                self.check_nothing_was_written()


class OutputOnAFullDisk(HostileTest):
    """A disk with room for little."""

    BEFORE = "true"

    def on_the_disk(self, *arguments):
        """What the program's exit code was, and what is then on the disk."""
        # In a mount namespace of its own, the small disk is seen by nobody else.
        script = (
            'mount -t tmpfs -o size=4k,nr_inodes=10 tmpfs "$1" &&\n'
            f'  printf old >"$1/result" && {self.BEFORE} || exit 77\n'
            'disk=$1; shift; "$@"; echo "exit code $?"; cat "$disk/result"; ls "$disk"'
        )
        disk = self.folder / "disk"
        disk.mkdir(exist_ok=True)
        as_root = [] if os.geteuid() == 0 else ["--map-root-user"]
        result = subprocess.run(
            [
                "unshare",
                *as_root,
                "--mount",
                "sh",
                "-c",
                script,
                "sh",
                disk,
                program.PROGRAM,
                "--output",
                disk / "result",
                *map(str, arguments),
            ],
            capture_output=True,
            encoding="utf-8",
            check=False,
        )
        if result.returncode != 0:
            self.skipTest("no small disk can be mounted here")
        self.assertEqual(
            without_findings(result.stderr),
            [f"gait-statistics: cannot write {disk}/result: No space left on device"],
        )
        return result.stdout

    def test_keeps_the_old_output(self):
        for walks in ([BOTH_FEET], ["--jobs", 2, BOTH_FEET, LEFT_FOOT]):
            self.assertEqual(self.on_the_disk(*walks), "exit code 1\noldresult\n")


class OutputWithoutProc(OutputOnAFullDisk):
    """Where no file without a name can be given one. The sanitizers need /proc too."""

    BEFORE = "mount -t tmpfs tmpfs /proc"


if __name__ == "__main__":
    # A caller that ignores signals, as nohup does, would have the program ignore them too.
    for ends in Interruption.SIGNALS:
        signal.signal(ends, signal.SIG_DFL)
    program.PROGRAM = os.path.abspath(sys.argv[1])
    program.unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
