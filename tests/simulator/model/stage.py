"""What the families of the model stand on: what the server remembers of each client, dice, and who is told."""

from model.wire import GENERAL, x


class Refused(Exception):
    """With the code of the error that answers the command."""


class Watcher:
    """What the server remembers of a client."""

    def __init__(self):
        self.classes, self.keys, self.prefixes, self.owned = set(), set(), set(), {}
        self.drafts, self.reorderings = [None, None], [None, None]  # of play lists, of chase lists


class Stage:
    """The present command: who gives it, what each client must hear of it, and what to ask afterwards, as functions
    that give a question and its answer, with their arguments. A method for a command sets it, says what it needs,
    and only then changes anything."""

    def __init__(self, dice, clients):
        self.dice = dice
        self.watchers = {who: Watcher() for who in clients}
        self.who, self.command, self.heard, self.probes = None, "", {}, []

    @staticmethod
    def need(condition, refusal=GENERAL):
        if not condition:
            raise Refused(refusal)

    def one(self, *choices):
        return self.dice.choice(choices)

    def chance(self, probability):
        return self.dice.random() < probability

    def any_record(self, tag, choices, always=()):
        """A record as it is sent, in any order, and its fields as they are kept: None if one is not good."""
        sent, kept = [x("Odd", 1)] * self.dice.randrange(2), {}
        for field, row in choices.items():
            if field in always or self.chance(0.4):
                given, meant = self.one(*row) if self.chance(0.15) else row[0]
                sent.append(given)
                kept = None if meant is None or kept is None else {**kept, field: meant}
        self.dice.shuffle(sent)
        return x(tag, *sent), kept

    def tell_where(self, watches, *reports):
        for who, watcher in self.watchers.items():
            if watches(watcher):
                self.heard[who] += "".join(x("report", report) for report in reports)

    def tell(self, report_class, *reports):
        self.tell_where(lambda watcher: report_class in watcher.classes, *reports)


def kept(element):
    """A choice of a record that is kept as it is sent."""
    return element, element
