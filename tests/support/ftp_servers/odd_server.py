"""A small FTP server with manners of its own: the user's name says in which way it goes wrong."""

# Every password is right but "wrong". Each connection sees the one root folder.
#
#   plain           nothing goes wrong
#   sdds            a folder that does not exist is told in another server's words
#   stall           takes 64 kB of a file and then nothing more
#   full            takes 64 kB of a file and then has no room: 452
#   swallow         takes the whole file and then says that it had no room: 552
#   hangup          ends the control connection in the middle of a file
#   mute_end        takes the whole file and never says so
#   active_refused  has no active mode
#   active_denied   accepts active mode and answers the transfer with 425
#   active_silent   accepts active mode and never connects
#   passive_refused has no passive mode
#   both_refused    has neither
#   mute_login      never answers the password
#   slow_end        says two seconds after the last byte that the file is complete
#   last_words      says goodbye by itself after each change of the folder
#   no_rename       renames nothing
#   no_replace      renames nothing over a file that is there
#   no_part         takes no file whose name ends in ".part"
#   write_only      neither renames nor removes

import os
import socket
import struct
import sys
import threading
import time

MANY = 64 * 1024


class Session:
    def __init__(self, control, root):
        self.control = control
        self.lines = control.makefile("rb")
        self.root = root
        self.folder = "/"
        self.user = ""
        self.active = None
        self.listener = None
        self.renamed = None

    def say(self, text):
        self.control.sendall(text.encode("utf-8") + b"\r\n")

    def run(self):
        self.say("220-A server with manners of its own\r\n220 Ready")
        for line in self.lines:
            word, _, rest = line.decode("utf-8", "replace").rstrip("\r\n").partition(" ")
            handler = getattr(self, "do_" + word.lower(), None)
            if handler is None:
                self.say("502 Not here")
            elif handler(rest) == "end":
                return

    def path(self, name):
        full = os.path.normpath(os.path.join(self.folder, name))
        return full, self.root + full

    def do_user(self, name):
        self.user = name
        self.say("331 And the password?")

    def do_pass(self, password):
        if self.user == "mute_login":
            return
        self.say("530 Not you" if password == "wrong" else "230 Come in")

    def do_pwd(self, _):
        self.say('257 "%s" is where you are' % self.folder.replace('"', '""'))

    def do_cwd(self, name):
        full, place = self.path(name)
        if os.path.isdir(place):
            self.folder = full
            self.say("250 There you are")
            if self.user == "last_words":
                self.say("421 Goodbye")
                return "end"
        elif self.user == "sdds":
            self.say("550 sdds: The system cannot find the file specified.")
        else:
            self.say("550 No such folder")

    def do_type(self, _):
        self.say("200 As you like")

    def do_size(self, name):
        _, place = self.path(name)
        if os.path.isfile(place):
            self.say("213 %d" % os.path.getsize(place))
        else:
            self.say("550 No such file")

    def do_rnfr(self, name):
        self.renamed = None
        _, place = self.path(name)
        if self.user in ("no_rename", "write_only"):
            self.say("502 Names stay")
        elif os.path.isfile(place):
            self.renamed = place
            self.say("350 And its new name?")
        else:
            self.say("550 No such file")

    def do_rnto(self, name):
        _, place = self.path(name)
        if self.renamed is None:
            self.say("503 Which file?")
        elif self.user == "no_replace" and os.path.exists(place):
            self.say("553 There is a file of that name")
        else:
            os.rename(self.renamed, place)
            self.say("250 That is its name")
        self.renamed = None

    def do_dele(self, name):
        _, place = self.path(name)
        if self.user == "write_only":
            self.say("550 What is here stays here")
        elif os.path.isfile(place):
            os.remove(place)
            self.say("250 Gone")
        else:
            self.say("550 No such file")

    def do_noop(self, _):
        self.say("200 Still here")

    def do_quit(self, _):
        self.say("221 Goodbye")
        return "end"

    def forget_data(self):
        if self.listener is not None:
            self.listener.close()
        self.listener = None
        self.active = None

    def take_active(self, address):
        self.forget_data()
        if self.user in ("active_refused", "both_refused"):
            self.say("500 Illegal PORT command")
        else:
            self.active = address
            self.say("200 Will do")

    def do_port(self, text):
        parts = text.split(",")
        self.take_active((".".join(parts[:4]), int(parts[4]) * 256 + int(parts[5])))

    def do_eprt(self, text):
        parts = text.split(text[0])
        self.take_active((parts[2], int(parts[3])))

    def listen(self):
        self.forget_data()
        if self.user in ("passive_refused", "both_refused"):
            self.say("502 No passive mode")
            return None
        self.listener = socket.create_server(("127.0.0.1", 0))
        return self.listener.getsockname()[1]

    def do_pasv(self, _):
        port = self.listen()
        if port:
            self.say("227 Entering Passive Mode (127,0,0,1,%d,%d)" % (port // 256, port % 256))

    def do_epsv(self, _):
        port = self.listen()
        if port:
            self.say("229 Entering Extended Passive Mode (|||%d|)" % port)

    def open_data(self):
        if self.listener is not None:
            self.listener.settimeout(10)
            data, _ = self.listener.accept()
            return data
        if self.active is not None:
            return socket.create_connection(self.active, 10)
        return None

    def do_stor(self, name):
        if self.user == "no_part" and name.endswith(".part"):
            self.forget_data()
            self.say("553 Not under that name")
            return None
        if self.active is not None and self.user == "active_denied":
            self.say("425 Cannot open the data connection")
            return None
        if self.active is not None and self.user == "active_silent":
            self.say("150 Wait for me")
            return None
        try:
            data = self.open_data()
        except OSError:
            data = None
        self.forget_data()
        if data is None:
            self.say("425 No data connection")
            return None
        self.say("150 Go on")
        _, place = self.path(name)
        with data, open(place, "wb") as file:
            return self.receive(data, file)

    def receive(self, data, file):
        taken = 0
        while True:
            if taken >= MANY and self.user == "stall":
                # Holds the connections until the other side lets go of them.
                self.control.settimeout(120)
                self.lines.read(1)
                return "end"
            if taken >= MANY and self.user == "full":
                data.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
                data.close()
                self.say("452 No room left")
                return None
            if taken >= MANY and self.user == "hangup":
                return "end"
            part = data.recv(MANY)
            if not part:
                break
            file.write(part)
            taken += len(part)
        file.close()
        data.close()
        if self.user == "mute_end":
            return None
        if self.user == "slow_end":
            time.sleep(2)
        if self.user == "swallow":
            self.say("552 There was no room for that")
        else:
            self.say("226 Transfer complete.")
        return None


def serve_one(control, root):
    with control:
        try:
            Session(control, root).run()
        except (OSError, ValueError, IndexError):
            pass


def main():
    root = sys.argv[1]
    listener = socket.create_server(("127.0.0.1", int(sys.argv[2])))
    while True:
        control, _ = listener.accept()
        threading.Thread(target=serve_one, args=(control, root), daemon=True).start()


if __name__ == "__main__":
    main()
