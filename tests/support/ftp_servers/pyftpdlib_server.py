"""Python's own FTP server, with the users anna (password "secret") and anonymous."""

import sys

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import ThreadedFTPServer


def main():
    root, port = sys.argv[1], int(sys.argv[2])
    authorizer = DummyAuthorizer()
    authorizer.add_user("anna", "secret", root, perm="elradfmwMT")
    with_warnings = {"perm": "elradfmwMT"}
    authorizer.add_anonymous(root, **with_warnings)
    FTPHandler.authorizer = authorizer
    FTPHandler.auth_failed_timeout = 0
    # One loop for everybody loses a person who comes in the moment in which another one is cut off.
    ThreadedFTPServer(("127.0.0.1", port), FTPHandler).serve_forever()


if __name__ == "__main__":
    main()
