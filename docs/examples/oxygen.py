#!/usr/bin/python3
"""oxygen.py ADDRESS LOGGER...: last year's oxygen of some loggers from the office's server, as CSV.

    python3 oxygen.py postgresql://bea@db.example.org/loggers "Mill Pond 3" "Weir" "Inlet" > oxygen.csv

Needs Debian's python3-psycopg2. In a notebook: rows = list(oxygen(ADDRESS, ["Mill Pond 3"])), and
pandas.DataFrame(rows, columns=COLUMNS) of it.
"""

import csv
import sys

import psycopg2

COLUMNS = ["logger", "time", "oxygen_mg_per_l"]

# A channel has its own place in each upload's settings; "reading" has each record once.
QUESTION = """
    SELECT logger.name, logger_time, tessmar.value_at(reading, place)
    FROM tessmar.logger
    JOIN tessmar.reading ON reading.logger_id = logger.id
    JOIN tessmar.channel USING (upload_id)
    WHERE logger.id = %s AND unit IN ('mg/L', 'ppm')
      AND logger_time > now() AT TIME ZONE 'UTC' - interval '1 year'
    ORDER BY logger_time, number"""


def oxygen(address, names):
    """Name, logger's time and oxygen of each record, one logger after the other."""
    with psycopg2.connect(address) as connection, connection.cursor() as cursor:
        for name in names:
            cursor.execute("SELECT id FROM tessmar.logger WHERE name = %s ORDER BY id", (name,))
            found = cursor.fetchall()
            if not found:
                sys.exit(f"the server has no logger \"{name}\"")
            for (logger,) in found:
                cursor.execute(QUESTION, (logger,))
                yield from cursor


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    table = csv.writer(sys.stdout, lineterminator="\n")
    table.writerow(COLUMNS)
    for name, time, value in oxygen(sys.argv[1], sys.argv[2:]):
        table.writerow([name, time.isoformat(), "" if value is None else value])


if __name__ == "__main__":
    main()
