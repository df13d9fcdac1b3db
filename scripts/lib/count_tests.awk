# Counts the cases of a JUnit report by CTest: "passed failed skipped". A case that did not run counts
# as skipped only where the test itself said so; a missing program is a failure.
/<testcase / {
    status = $0
    sub(/.* status="/, "", status)
    sub(/".*/, "", status)
    if (status == "run") ++passed
    else if (status != "notrun" && status != "disabled") ++failed
}
/<skipped / {
    if (/message="SKIP_/) ++skipped
    else ++failed
}
END { print passed + 0, failed + 0, skipped + 0 }
