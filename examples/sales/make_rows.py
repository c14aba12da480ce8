#!/usr/bin/env python3
"""Prints the rows of the sales database as SQL: always the same few thousand.

make_rows.py LOGIN    LOGIN is the user/password@server text that may ask queries
"""

import datetime
import hashlib
import sys

REGIONS = ["North", "East", "South", "West"]
CUSTOMERS = 180
SALES = 1400
FIRST_DAY = datetime.date(2021, 1, 1)

PRODUCTS = {
    "Paper": ["Letter A4", "Letter A5", "Carbon", "Tracing", "Label roll"],
    "Writing": ["Ball pen", "Fountain pen", "Pencil HB", "Marker", "Eraser"],
    "Binding": ["Ring binder", "Staples 24/6", "Clip 32 mm", "Glue stick"],
    "Machines": ["Desk lamp", "Calculator", "Label printer", "Shredder"],
}
SYLLABLES = ["bar", "del", "fin", "gor", "han", "kel", "mor", "nis", "ost", "ran", "sol", "ver"]
ENDINGS = ["& Sons", "Ltd", "Trading", "Stores", "O'Neil"]


class Numbers:
    """A generator of its own, because the language's may change from one version to the next."""

    def __init__(self, seed):
        self.state = seed

    def below(self, bound):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) % 2**64
        return (self.state >> 33) % bound

    def pick(self, items):
        return items[self.below(len(items))]


def literal(value):
    return str(value) if isinstance(value, int) else "'" + value.replace("'", "''") + "'"


def insert(table, rows):
    for start in range(0, len(rows), 100):
        print(f"insert into {table} values")
        print(",\n".join("  (" + ", ".join(map(literal, row)) + ")"
                         for row in rows[start:start + 100]) + ";")


def main():
    login = sys.argv[1]
    numbers = Numbers(7)

    def day():
        return (FIRST_DAY + datetime.timedelta(days=numbers.below(3 * 365))).isoformat()

    products = []
    for category, names in PRODUCTS.items():
        for name in names:
            scale = 100 if category != "Machines" else 1500
            products.append((len(products) + 1, name, category, scale + numbers.below(9 * scale)))
    customers = []
    for number in range(1, CUSTOMERS + 1):
        name = "".join(numbers.pick(SYLLABLES) for _ in range(3)).capitalize()
        customers.append((number, 1 + numbers.below(len(REGIONS)),
                          f"{name} {numbers.pick(ENDINGS)}", day()))
    sales, lines = [], []
    for number in range(1, SALES + 1):
        sales.append((number, 1 + numbers.below(CUSTOMERS), day(), int(numbers.below(25) == 0)))
        for line in range(1, 2 + numbers.below(5)):
            product = numbers.pick(products)
            quantity = 1 + numbers.below(12)
            discount = quantity * product[3] // 20 if numbers.below(6) == 0 else 0
            lines.append((number, line, product[0], quantity, discount))

    digest = hashlib.sha3_256(login.encode()).hexdigest().upper()
    print("begin;")
    insert("region", list(enumerate(REGIONS, 1)))
    insert("customer", customers)
    insert("product", products)
    insert("sale", sales)
    insert("sale_line", lines)
    insert("login", [(digest, login.split("/")[0])])
    print("commit;")
    print("analyze;")
    print(f".print {len(customers) + len(products) + len(sales) + len(lines)} rows are in")


main()
