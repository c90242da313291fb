"""Which lines of the log an administrator can switch off."""

import hashlib

import pytest

GUARD = "no file, hence no lock|starting without the lock file"
FIXED = ("Making a new instance of global settings", "Loading global settings from")


@pytest.mark.parametrize("rules, told", [(None, True), ("vireon.guard=false", False)])
def test_lines_of_the_guard(install, rules, told):
    app = install(environment={"QT_LOGGING_RULES": rules})
    key = hashlib.sha1(b"vireon_memLockKey").hexdigest()
    (app.temporary / f"runguard_{key}.lock").mkdir()
    app.allow("starting without the lock file")
    app.start()
    app.wait_until_shows("Started and ready")
    assert bool(app.log_count(GUARD)) == told
    for text in FIXED:
        assert app.log_count(text) == 1
