#!/usr/bin/env python3
"""The damaged-workbook campaign: imports every workbook of damaged_workbooks.py with the
real `brenlow register import --replace --yes` into a client that already has a
register, each under a memory limit, and holds every run to this:

  - exit 0 with a whole import (the register then holds what the import reported), or
  - a refusal with exit != 0 and the database unchanged byte for byte;
  - no crash, no library text on the screen, and a peak resident size under 100 MB.

    workbook_campaign.py BRENLOW WORKDIR [COUNT] [--sanitized]

COUNT defaults to BRENLOW_CAMPAIGN_WORKBOOKS or 300. Under the sanitizers (--sanitized)
the address-space limit is left off: their shadow memory needs the room.
"""
import hashlib
import json
import os
import re
import resource
import shutil
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import damaged_workbooks  # noqa: E402

PEAK_LIMIT_MB = 100
ADDRESS_LIMIT = 1 << 30
LIBRARY_TEXT = re.compile(r'exception|what\(\)|std::|vector::|basic_string|terminate called|bad_alloc|'
                          r'minizip|unz|expat|XML_|freexl|Segmentation|Aborted|AddressSanitizer|runtime error')


def run(brenlow, db, args):
    p = subprocess.run([brenlow, '--db', 'sqlite:' + db] + args, capture_output=True)
    return p.returncode, p.stdout.decode(errors='replace'), p.stderr.decode(errors='replace')


def run_measured(brenlow, db, args, limit):
    """Runs one command and returns (exit code, stdout, stderr, peak resident MB)."""
    def limited():
        if limit:
            resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_LIMIT, ADDRESS_LIMIT))
    r, w = os.pipe()
    re_, we = os.pipe()
    pid = os.fork()
    if pid == 0:
        os.close(r)
        os.close(re_)
        os.dup2(w, 1)
        os.dup2(we, 2)
        limited()
        os.execv(brenlow, [brenlow, '--db', 'sqlite:' + db] + args)
    os.close(w)
    os.close(we)
    out = os.fdopen(r, 'rb').read()
    err = os.fdopen(re_, 'rb').read()
    _, status, usage = os.wait4(pid, 0)
    code = os.waitstatus_to_exitcode(status)
    return code, out.decode(errors='replace'), err.decode(errors='replace'), usage.ru_maxrss / 1024.0


def digest(path):
    return hashlib.sha256(open(path, 'rb').read()).hexdigest()


def main():
    args = [a for a in sys.argv[1:] if not a.startswith('--')]
    sanitized = '--sanitized' in sys.argv
    brenlow, work = os.path.abspath(args[0]), os.path.abspath(args[1])
    # Under the sanitizers every run is slower and larger: fewer workbooks, no size asserted.
    count = int(args[2]) if len(args) > 2 else int(os.environ.get('BRENLOW_CAMPAIGN_WORKBOOKS',
                                                                  '100' if sanitized else '300'))
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work)
    files = os.path.join(work, 'files')
    os.makedirs(files)
    base = os.path.join(work, 'base.db')

    def setup(argv):
        code, out, err = run(brenlow, base, argv)
        if code != 0:
            raise SystemExit('setup failed: %s\n%s%s' % (' '.join(argv), out, err))
        return out

    setup(['demo', '--out', work])
    good_xls, good_xlsx = os.path.join(work, 'good.xls'), os.path.join(work, 'good.xlsx')
    setup(['register', 'export', good_xls, '--client', 'DEMO01', '--year', '2025'])
    setup(['register', 'export', good_xlsx, '--client', 'DEMO01', '--year', '2025'])
    setup(['init', '--client', 'CAMP', '--year', '2025', '--status', '3'])
    setup(['register', 'import', good_xls, '--client', 'CAMP', '--year', '2025', '--yes'])
    before = json.loads(setup(['register', 'list', '--client', 'CAMP', '--year', '2025', '--json']))
    base_digest = digest(base)

    made = damaged_workbooks.campaign(good_xls, good_xlsx, files, count, 20261125)
    db = os.path.join(work, 'work.db')
    failures = []
    imported = refused = 0
    peak, peak_file = 0.0, ''
    started = time.time()
    for path in made:
        shutil.copyfile(base, db)
        code, out, err, mb = run_measured(
            brenlow, db, ['register', 'import', path, '--client', 'CAMP', '--year', '2025', '--replace', '--yes'],
            not sanitized)
        name = os.path.basename(path)
        if mb > peak:
            peak, peak_file = mb, name
        if mb >= PEAK_LIMIT_MB and not sanitized:
            failures.append('%s: peak resident size %.1f MB' % (name, mb))
        if code < 0 or code >= 128:
            failures.append('%s: ended by signal (exit %d)\n%s' % (name, code, err[-2000:]))
            continue
        if LIBRARY_TEXT.search(out + err):
            failures.append('%s: library text reached the person:\n%s%s' % (name, out, err[-2000:]))
        if code == 0:
            imported += 1
            m = re.search(r': (\d+) opening entries, (\d+) additions', out)
            after = json.loads(run(brenlow, db, ['register', 'list', '--client', 'CAMP', '--year', '2025',
                                                 '--json'])[1])
            if not m or (len(after['opening']), len(after['additions'])) != (int(m.group(1)), int(m.group(2))):
                failures.append('%s: exit 0 but the register does not hold the import it reported: %s' %
                                (name, out.strip()))
        else:
            refused += 1
            if digest(db) != base_digest:
                failures.append('%s: refused (exit %d) but the database changed' % (name, code))
            if not err.strip():
                failures.append('%s: refused with no message' % name)
    elapsed = time.time() - started
    print('workbook campaign: %d workbooks, %d imported, %d refused, peak resident %.1f MB (%s), %.0f s' %
          (len(made), imported, refused, peak, peak_file, elapsed))
    print('the register before: %d opening entries, %d additions' % (len(before['opening']), len(before['additions'])))
    for f in failures:
        print('FAILED ' + f)
    return 1 if failures else 0


if __name__ == '__main__':
    sys.exit(main())
