# Waiting on what a test can see, not on the clock. Source this file.

# follow FILE SECONDS: opens fd $follow_fd on FILE as it grows (FILE may not
# exist yet); the follower ends after SECONDS, or with unfollow.
follow() {
    exec {follow_fd}< <(exec timeout "$2" tail -F -c +1 "$1" 2>/dev/null)
    follow_pid=$!
}
unfollow() {
    exec {follow_fd}<&-
    kill "$follow_pid" 2>/dev/null
}

# wait_for_line FILE PATTERN SECONDS: true once FILE holds a line matching PATTERN.
wait_for_line() {
    local status=1
    follow "$1" "$3"
    grep -q -m1 -- "$2" <&"$follow_fd" && status=0
    unfollow
    return $status
}

# wait_for_bytes FILE COUNT SECONDS: true once FILE holds COUNT bytes.
wait_for_bytes() {
    local got
    follow "$1" "$3"
    got=$(head -c "$2" <&"$follow_fd" | wc -c)
    unfollow
    [ "$got" -ge "$2" ]
}
