#!/usr/bin/env python3
"""daily-means.py FILE.csv: the mean of each channel for each day of an analysis CSV, with nothing but
Python's own library. Where two uploads disagree no record is taken."""

import csv
import sys
from collections import defaultdict


def daily_means(path):
    """By day a dictionary of heading and mean; channels without a value on a day are left out."""
    values = defaultdict(lambda: defaultdict(list))
    with open(path, newline="", encoding="utf-8") as file:
        for row in csv.DictReader(file):
            if row.pop("disagreement") == "1":
                continue
            day = row.pop("logger_time")[:10]
            row.pop("corrected_time")
            for heading, text in row.items():
                if text:
                    values[day][heading].append(float(text))
    return {day: {heading: sum(numbers) / len(numbers) for heading, numbers in channels.items()}
            for day, channels in values.items()}


if __name__ == "__main__":
    for day, means in daily_means(sys.argv[1]).items():
        for heading, mean in means.items():
            print(f"{day}\t{heading}\t{mean:.3f}")
