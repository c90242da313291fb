"""Which lines of the log an administrator can switch off."""

import hashlib

import pytest

from rig import wait_for

GUARD = "no file, hence no lock|starting without the lock file"
FIXED = ("Making a new instance of global settings", "Loading global settings from")


@pytest.mark.parametrize("rules, told", [(None, True), ("vireon.guard=false", False)])
def test_lines_of_the_guard(install, rules, told):
    app = install(environment={"QT_LOGGING_RULES": rules})
    key = hashlib.sha1(b"vireon_memLockKey").hexdigest()
    (app.temporary / f"runguard_{key}.lock").mkdir()
    app.allow("starting without the lock file")
    app.start()
    # By then it has tried.
    wait_for(app.windows, what="a window")
    assert bool(app.log_count(GUARD)) == told
    for text in FIXED:
        assert app.log_count(text) == 1
