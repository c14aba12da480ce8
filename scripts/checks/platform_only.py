#!/usr/bin/env python3
"""The operating system is met only in dqlib/platform/, its tests, and what tests are supported by.

Elsewhere there is no header that isn't the C++ standard library's, the tree's own or a named third
party's, no platform #if and no system call; and in dqlib/ and siblings/ none of the standard
library's own ways to the system either (files, environment, clocks, shell).
"""

import re

import _tree

EXEMPT = ("dqlib/platform/", "tests/platform/", "tests/support/")

STANDARD = set(
    """algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex
    concepts condition_variable coroutine deque exception execution expected filesystem format
    forward_list fstream functional future generator initializer_list iomanip ios iosfwd iostream
    istream iterator latch limits list locale map memory memory_resource mutex new numbers numeric
    optional ostream queue random ranges ratio regex scoped_allocator semaphore set shared_mutex
    source_location span spanstream sstream stack stacktrace stdexcept stop_token streambuf string
    string_view syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map
    unordered_set utility valarray variant vector version cassert cctype cerrno cfenv cfloat
    cinttypes climits clocale cmath csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib cstring
    ctime cuchar cwchar cwctype""".split())

# Third parties, by the tops of the tree that may have them.
THIRD_PARTIES = {
    "tests": r"(gtest|gmock)/",
    "fuzzing": r"fuzzer/|gmpxx\.h$",
    "benchmarks": r"(benchmark|absl)/",
    "apps": r"sqlite3\.h$|Q[A-Z]\w*$|Qt|CLI/|nlohmann/|wx/",
}
# What a window layer needs of the display beyond its toolkit.
DISPLAY = ("apps/workbench/layer/", r"(gtk|gdk|X11)/|glib-unix\.h$")

# A benchmark may call the system where that is the peer it measures.
PEER = "benchmarks/"

PLATFORM_CONDITION = re.compile(
    r"^\s*#\s*(?:if|ifdef|ifndef|elif|elifdef|elifndef)\b.*\b"
    r"(_WIN32|_WIN64|WIN32|_MSC_VER|__MINGW\w*|__CYGWIN__|__linux\w*|linux|__unix\w*|unix"
    r"|__APPLE__|__MACH__|__ANDROID__|__FreeBSD__|__NetBSD__|__OpenBSD__|__sun|__GLIBC\w*|__BIONIC__|_POSIX_\w+|_XOPEN_\w+"
    r"|_GNU_SOURCE)\b",
    re.MULTILINE,
)

HAS_INCLUDE = re.compile(r"\b__has_include(?:_next)?\s*\(\s*<([^>\n]*)>")

SYSTEM_CALL = re.compile(
    r"(?<![\w.>:])(?:::)?"
    r"(fork|vfork|execl|execlp|execle|execv|execve|execvp|execvpe|posix_spawnp?|popen|pclose"
    r"|waitpid|wait4|kill|killpg|pipe2?|dup2|dup3|fcntl|ioctl|isatty|fileno|fdopen|mmap|munmap"
    r"|mkstemp|mkdtemp|setenv|unsetenv|putenv|getpid|getppid|getuid|geteuid|setsid|sigaction"
    r"|pthread_\w+|nl_langinfo|gethostname|getaddrinfo|dlopen|dlsym|usleep|nanosleep"
    r"|clock_gettime|gettimeofday|localtime_r|gmtime_r|syscall)\s*\(")

STANDARD_WAYS = [
    (re.compile(r"^\s*#\s*include\s*<(filesystem|fstream|csignal)>", re.MULTILINE),
     "<{}>"),
    (re.compile(r"\b(std::(?:system|getenv|secure_getenv|fopen|freopen|tmpfile|remove|rename|time"
                r"|clock|setlocale|localtime|gmtime|signal))\s*\("), "{}"),
    (re.compile(r"(?<![\w.>:])(?:::)?(getenv|system|fopen|setlocale|localtime|time)\s*\("
                r"(?!\))"), "{}"),
    (re.compile(r"\b(std::chrono::\w+_clock)::now\b"), "{}::now"),
]


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def check(path, code):
    top = path.split("/")[0]
    for line, name, angled in _tree.includes(code):
        if angled and name not in STANDARD:
            allowed = THIRD_PARTIES.get(top)
            is_display = path.startswith(DISPLAY[0]) and re.match(DISPLAY[1], name)
            if not (allowed and re.match(allowed, name) or is_display) and not path.startswith(PEER):
                yield line, f"<{name}> belongs into dqlib/platform/"
    for match in PLATFORM_CONDITION.finditer(code):
        yield line_of(code, match.start(1)), f"#if on {match[1]} belongs into dqlib/platform/"
    for match in HAS_INCLUDE.finditer(code):
        if match[1] not in STANDARD:
            yield (line_of(code, match.start(1)),
                   f"asking for <{match[1]}> belongs into dqlib/platform/")
    if path.startswith(PEER):
        return
    for match in SYSTEM_CALL.finditer(code):
        yield line_of(code, match.start(1)), f"the call {match[1]} belongs into dqlib/platform/"
    if top in ("dqlib", "siblings"):
        for pattern, form in STANDARD_WAYS:
            for match in pattern.finditer(code):
                yield (line_of(code, match.start(1)),
                       f"{form.format(match[1])} goes around the seam; ask dqlib/platform/")


def main():
    root = _tree.root_argument()
    complaints = []
    for top in ("dqlib", "siblings", "apps", "tests", "benchmarks", "fuzzing", "examples"):
        for path in _tree.files(root, _tree.SOURCE_SUFFIXES, top):
            if not path.startswith(EXEMPT):
                code = _tree.code_only(_tree.read(root, path))
                complaints += [f"{path}:{line}: {text}" for line, text in check(path, code)]
    _tree.finish(complaints)


main()
