#!/usr/bin/python3
"""Starts FTP servers on this computer alone, runs a command that finds them, and ends them.

  with_ftp_servers.py KIND[,KIND]... COMMAND [ARGUMENT]...

The kinds: odd, pyftpdlib, pureftpd, vsftpd, vsftpd_passive (refuses active mode), or all. The
command finds in its environment, for the kind odd, FTP_ODD_PORT and FTP_ODD_ROOT (the host's folder
that a person who logs in sees as "/"), and FTP_CLOSED_PORT, where nothing listens. Every root has
the folders "upload" and "with blank". Users: see the servers below. The status is the command's.
"""

import glob
import os
import signal
import socket
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
UNPACKED = os.path.join(HERE, "..", "..", "..", "build", "cache", "ftp-servers")
NOBODY = 65534
# Two of the servers must be started by root, and become nobody for each person who logs in.
AS_ROOT = [] if os.geteuid() == 0 else ["sudo", "-n"]


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as probe:
        return probe.getsockname()[1]


def make_root(folder, kind):
    root = os.path.join(folder, kind)
    for name in ("upload", "with blank"):
        os.makedirs(os.path.join(root, name))
        os.chmod(os.path.join(root, name), 0o777)
    return root


def unpacked(path):
    place = os.path.abspath(os.path.join(UNPACKED, path))
    if not os.path.exists(place):
        sys.exit("with_ftp_servers.py: there is no %s: run tools/setup.sh host" % place)
    return place


def with_libraries(command):
    libraries = glob.glob(os.path.join(os.path.abspath(UNPACKED), "usr", "lib", "*-linux-gnu"))
    return ["env", "LD_LIBRARY_PATH=" + ":".join(libraries)] + command


def odd(folder, port):
    root = make_root(folder, "odd")
    return root, [sys.executable, os.path.join(HERE, "odd_server.py"), root, str(port)]


def pyftpdlib(folder, port):
    root = make_root(folder, "pyftpdlib")
    return root, [sys.executable, os.path.join(HERE, "pyftpdlib_server.py"), root, str(port)]


def pureftpd(folder, port):
    """Users of its own user file: anna (secret), and small (secret) with room for one megabyte."""
    root = make_root(folder, "pureftpd")
    small = make_root(folder, "pureftpd_small")
    passwords = os.path.join(folder, "pureftpd.passwd")
    database = os.path.join(folder, "pureftpd.pdb")
    # A quick form of the password: the server's own takes seconds for each person who logs in.
    secret = subprocess.run(["openssl", "passwd", "-5", "-salt", "quorvale", "secret"], check=True,
                            stdout=subprocess.PIPE, text=True).stdout.strip()
    with open(passwords, "w", encoding="ascii") as file:
        for name, home, quota in (("anna", root, ""), ("small", small, str(1024 * 1024))):
            os.chmod(home, 0o777)
            file.write("%s:%s:%d:%d::%s/./:::::::%s:::::\n"
                       % (name, secret, NOBODY, NOBODY, home, quota))
    subprocess.run(with_libraries([unpacked("usr/bin/pure-pw"), "mkdb", database, "-f", passwords]),
                   check=True)
    return root, AS_ROOT + with_libraries([
        unpacked("usr/sbin/pure-ftpd"), "-S", "127.0.0.1,%d" % port, "-4", "-H", "-E", "-A", "-u", "1",
        "-n", "100000:100000", "-g", os.path.join(folder, "pureftpd.pid"), "-l", "puredb:" + database])


def vsftpd(folder, port, kind="vsftpd", extra=()):
    """Its own kind of user is the anonymous one, with the passwords guest and secret."""
    root = make_root(folder, kind)
    passwords = os.path.join(folder, kind + ".passwords")
    with open(passwords, "w", encoding="ascii") as file:
        file.write("guest\nsecret\n")
    settings = os.path.join(folder, kind + ".conf")
    # The person of the system behind it must have a home that exists; nobody has none.
    lines = [
        "background=NO", "ftp_username=daemon", "nopriv_user=nobody", "listen=YES", "listen_address=127.0.0.1", "listen_port=%d" % port,
        "anonymous_enable=YES", "local_enable=NO", "write_enable=YES",
        "anon_root=" + root, "anon_upload_enable=YES", "anon_other_write_enable=YES",
        "anon_umask=022", "secure_email_list_enable=YES", "email_password_file=" + passwords,
        "connect_from_port_20=NO", "seccomp_sandbox=NO", "isolate=NO", "isolate_network=NO",
        "session_support=NO", "delay_failed_login=0", "secure_chroot_dir=" + folder,
        "connect_timeout=5", *extra
    ]
    with open(settings, "w", encoding="ascii") as file:
        file.write("\n".join(lines) + "\n")
    # It reads no settings but root's, and lets nobody into a root folder that he can write to.
    subprocess.run(AS_ROOT + ["chown", "0:0", settings, root], check=True)
    return root, AS_ROOT + with_libraries([unpacked("usr/sbin/vsftpd"), settings])


def vsftpd_passive(folder, port):
    return vsftpd(folder, port, "vsftpd_passive", ["port_enable=NO"])


KINDS = {
    "odd": odd,
    "pyftpdlib": pyftpdlib,
    "pureftpd": pureftpd,
    "vsftpd": vsftpd,
    "vsftpd_passive": vsftpd_passive,
}


def answers(port):
    """A whole greeting: a server that listens before it is ready would look dead to a test."""
    try:
        with socket.create_connection(("127.0.0.1", port), 2) as probe:
            probe.settimeout(2)
            return probe.recv(100).startswith(b"220")
    except OSError:
        return False


def start(kind, folder, running):
    port = free_port()
    root, command = KINDS[kind](folder, port)
    log_name = os.path.join(folder, kind + ".log")
    with open(log_name, "wb") as log:
        server = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                  start_new_session=True)
    running.append(server)
    end = time.monotonic() + 10
    while not answers(port):
        if server.poll() is not None or time.monotonic() > end:
            with open(log_name, encoding="utf-8", errors="replace") as log:
                sys.exit("with_ftp_servers.py: %s did not start\n%s" % (kind, log.read()))
        time.sleep(0.05)
    os.environ["FTP_%s_PORT" % kind.upper()] = str(port)
    os.environ["FTP_%s_ROOT" % kind.upper()] = root


def end(running, folder):
    for server in running:
        if AS_ROOT:
            subprocess.run(AS_ROOT + ["kill", "-KILL", "--", "-%d" % server.pid], check=False)
        else:
            try:
                os.killpg(server.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        server.wait()
    subprocess.run(AS_ROOT + ["rm", "-rf", "--", folder], check=False)


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    kinds = list(KINDS) if sys.argv[1] == "all" else sys.argv[1].split(",")
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    folder = tempfile.mkdtemp(prefix="quorvale_ftp_")
    os.chmod(folder, 0o755)
    running = []
    try:
        os.environ["FTP_CLOSED_PORT"] = str(free_port())
        for kind in kinds:
            start(kind, folder, running)
        return subprocess.run(sys.argv[2:], check=False).returncode
    finally:
        end(running, folder)


if __name__ == "__main__":
    sys.exit(main())
