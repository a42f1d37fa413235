#!/usr/bin/env python3
"""Runs clang-tidy over sources: tidy.py <folder of this tree> <include folder> <jobs> <source>...

Most of its time goes into the headers, once for each source. So up to a dozen sources of a folder
are looked at as one; where names collide that each of them has to itself, the dozen is halved until
none do. The last line counts the findings; the status is 1 where there are any.
"""

import collections
import concurrent.futures
import pathlib
import re
import subprocess
import sys
import tempfile

AT_ONCE = 12
FINDING = re.compile(r"(\S+?):\d+:\d+: (?:warning|error): ")


class Linter:
    def __init__(self, root, options, work):
        self.root = root
        self.options = options
        self.work = pathlib.Path(work)

    def look_at(self, sources):
        """What clang-tidy says of the sources."""
        if len(sources) == 1:
            return self.tidy(sources[0])
        unit = self.work / (sources[0].replace("/", "_") + "_%d.cpp" % len(sources))
        unit.write_text("".join('#include "%s/%s"\n' % (self.root, source) for source in sources))
        parsed = subprocess.run(["clang++", "-fsyntax-only", *self.options, unit],
                                stderr=subprocess.DEVNULL, check=False)
        if parsed.returncode == 0:
            return self.tidy(unit)
        half = len(sources) // 2
        return self.look_at(sources[:half]) + self.look_at(sources[half:])

    def tidy(self, unit):
        done = subprocess.run(
            ["clang-tidy", "--quiet", "--config-file=%s/.clang-tidy" % self.root,
             "--header-filter=^%s/" % re.escape(str(self.root)), unit, "--", *self.options],
            cwd=self.root, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False)
        if done.returncode and not FINDING.search(done.stdout):
            return "%s:1:1: error: clang-tidy ended with %d\n" % (unit, done.returncode)
        return done.stdout


def groups_of(sources):
    """The sources of each folder, a dozen at once; the largest come first, to end together."""
    folders = collections.defaultdict(list)
    for source in sources:
        folders[source.rpartition("/")[0]].append(source)
    groups = [sources[i:i + AT_ONCE] for sources in folders.values()
              for i in range(0, len(sources), AT_ONCE)]
    return sorted(groups, key=len, reverse=True)


def findings_in(text):
    """Each finding with the lines that belong to it."""
    finding = []
    for line in text.splitlines():
        if FINDING.match(line) and finding:
            yield "\n".join(finding)
            finding = []
        finding.append(line)
    if finding:
        yield "\n".join(finding)


def main(root, includes, jobs, *sources):
    root = str(pathlib.Path(root).resolve())
    options = ["-std=c++20", "-w", "-I", includes]
    # A header's findings come with everything that includes it.
    found = {}
    with tempfile.TemporaryDirectory() as work, \
            concurrent.futures.ThreadPoolExecutor(int(jobs)) as pool:
        linter = Linter(pathlib.Path(root), options, work)
        for text in pool.map(linter.look_at, groups_of(sources)):
            for finding in findings_in(text):
                if found.setdefault(finding.partition("\n")[0], finding) is finding:
                    print(finding.replace(str(linter.root) + "/", ""), flush=True)
    print("%d sources, %d findings" % (len(sources), len(found)))
    return 1 if found else 0


sys.exit(main(*sys.argv[1:]))
