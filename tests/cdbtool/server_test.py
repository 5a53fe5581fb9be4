"""server_test.py PROGRAM...

What cdbtool asks a server. Run by tests/server/with-server; PROGRAM with its arguments in front is what is tried.
"""
import os
import subprocess
import sys
import tempfile
import unittest


def on_server(statement):
    return subprocess.run(['psql', '-qtAX', '-h', '127.0.0.1', '-p', os.environ['QUIVANE_TEST_SERVER'], '-U', 'quivane', '-c',
                           statement, 'postgres'], check=True, env=os.environ, stdout=subprocess.PIPE, text=True).stdout


class ServerTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.link = os.path.join(folder.name, 'link.cdb')
        with open(self.link, 'w', encoding='utf-8') as made:
            made.write('[ODBC]\nDRIVER=PostgreSQL Unicode\nSERVER=127.0.0.1\nPORT=' + os.environ['QUIVANE_TEST_SERVER'] +
                       '\nDATABASE=postgres\nUID=quivane\n')

    def said(self, *arguments):
        return subprocess.run([*program, *arguments], check=True, stdout=subprocess.PIPE, text=True, timeout=60).stdout

    def test_a_statement_runs_once(self):
        on_server('CREATE TABLE towns (name text PRIMARY KEY, people integer); CREATE SEQUENCE asked')
        on_server("INSERT INTO towns VALUES ('Rome', 7)")
        on_server("CREATE VIEW counting AS SELECT name, nextval('asked') AS time FROM towns")
        for arguments in (['query', self.link, "SELECT name, nextval('asked') AS time FROM towns"],
                          ['show', self.link, 'counting'],
                          ['query', self.link, '--csv', "SELECT name, nextval('asked') AS time FROM towns"]):
            with self.subTest(arguments):
                on_server('ALTER SEQUENCE asked RESTART')
                self.assertIn('Rome', self.said(*arguments))
                self.assertEqual('1\n', on_server('SELECT last_value FROM asked'))

    def test_columns_are_as_wide_as_their_values(self):
        on_server('CREATE TABLE wide (k integer PRIMARY KEY, v text, n integer)')
        on_server("INSERT INTO wide VALUES (1, 'a', 100), (2, 'longer than its name', 7)")
        self.assertEqual('k  v                     n\n'
                         '-  --------------------  ---\n'
                         '1  a                     100\n'
                         '2  longer than its name    7\n', self.said('show', self.link, 'wide'))


if __name__ == '__main__':
    program = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
