"""Takes the time and memory of programs, in turns."""
import os
import statistics
import subprocess
from typing import Callable, NamedTuple


class Usage(NamedTuple):
    cpu: float     # seconds, user and system
    memory: float  # peak, MiB; never below that of the Python that starts the program (some 12)


def run(command, folder):
    """One run of a program that must succeed; a text is a line for the shell."""
    with open(os.devnull, "r+b") as null:
        child = subprocess.Popen(command, cwd=folder, shell=isinstance(command, str), stdin=null, stdout=null,
                                 stderr=null)
    _, status, used = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        raise RuntimeError("%s ended with %d" % (command, child.returncode))
    return Usage(used.ru_utime + used.ru_stime, used.ru_maxrss / 1024)


class Session:
    """A document window that does what it is told; see session.cpp."""

    def __init__(self, program, base, *options):
        self.child = subprocess.Popen([program, base, *options], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def cpu(self, operation):
        """CPU seconds of one operation."""
        self.child.stdin.write(operation + "\n")
        self.child.stdin.flush()
        answer = self.child.stdout.readline()
        if not answer:
            raise RuntimeError("the session ended in " + operation)
        return float(answer)

    def close(self):
        self.child.stdin.close()
        self.child.wait()


def in_turns(subjects: dict[str, Callable[[], tuple]], most=15, budget=6.0):
    """Lets the subjects take turns, each second round in reverse, and gives a list of results for each: pairs
    taken next to each other share what else the machine does. Rounds end at `most`, or when the first numbers of
    the results, seconds, exceed the budget; there are 3 at least, or 1 where a round takes longer than that."""
    results = {name: [] for name in subjects}
    spent = 0.0
    for number in range(most):
        order = list(subjects) if number % 2 == 0 else list(reversed(subjects))
        for name in order:
            results[name].append(subjects[name]())
        spent += sum(result[-1][0] for result in results.values())
        if spent > budget and (number >= 2 or spent / (number + 1) > budget):
            break
    return results


def median(results, field=0):
    return statistics.median(result[field] for result in results)


def ratio(ours, theirs, field=0):
    """Median of the ratios of neighbours."""
    return statistics.median(a[field] / b[field] for a, b in zip(ours, theirs))
