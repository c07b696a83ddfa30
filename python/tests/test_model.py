"""Random edits, beside a model of lists and dicts that says what must come of them."""

from typing import Any

import hypothesis.strategies as st
from hypothesis import settings
from hypothesis.stateful import Bundle, RuleBasedStateMachine, consumes, initialize, invariant, rule

import bk_parser
from bk_parser import Document, Entry, Group

names = st.sampled_from(["a", "b", "c", "light"])
scalars = st.one_of(
    st.booleans(),
    st.integers(-(2**31), 2**31 - 1),
    st.floats(allow_nan=False, allow_infinity=False),
    st.text(max_size=20),
    st.binary(max_size=20),
)


class Model:
    """An entry of the model: its name, its scalars and the entries of its group, or None when it has no group."""

    def __init__(self, name: str, values: list[Any]) -> None:
        self.name = name
        self.values = values
        self.entries: list[Model] | None = None
        self.owner: list[Model] | None = None

    def below(self) -> list["Model"]:
        found = [self]
        for entry in found:
            found.extend(entry.entries or [])
        return found


def same(value: Any, expected: Any) -> bool:
    return type(value) is type(expected) and value == expected


def check(entry: Entry, model: Model) -> None:
    assert entry.name == model.name
    values = [value for value in entry.values if not isinstance(value, Group)]
    assert len(values) == len(model.values)
    assert all(map(same, values, model.values))
    assert (entry.group is None) == (model.entries is None)
    check_all(list(entry), model.entries or [])


def check_all(entries: list[Entry], models: list[Model]) -> None:
    assert len(entries) == len(models)
    for entry, model in zip(entries, models):
        check(entry, model)


class Edits(RuleBasedStateMachine):
    """Every entry that a rule ever got is kept, and used further, whatever became of it."""

    known = Bundle("known")

    def __init__(self) -> None:
        super().__init__()
        self.documents = [Document(), Document()]
        self.models: list[list[Model]] = [[], []]
        self.detached: list[tuple[Entry, Model]] = []
        self.iterators: list[Any] = []

    @initialize(target=known)
    def begin(self) -> Any:
        entry = self.documents[0].add("a", 1)
        model = Model("a", [1])
        self.models[0].append(model)
        model.owner = self.models[0]
        return entry, model

    @rule(target=known, which=st.integers(0, 1), name=names, values=st.lists(scalars, max_size=4))
    def add(self, which: int, name: str, values: list[Any]) -> Any:
        entry = self.documents[which].add(name, *values)
        model = Model(name, list(values))
        model.owner = self.models[which]
        model.owner.append(model)
        return entry, model

    @rule(target=known, holder=known, name=names, value=scalars)
    def add_below(self, holder: Any, name: str, value: Any) -> Any:
        entry = holder[0].add(name, value)
        model = Model(name, [value])
        if holder[1].entries is None:
            holder[1].entries = []
        model.owner = holder[1].entries
        model.owner.append(model)
        return entry, model

    @rule(target=known, name=names, values=st.lists(scalars, max_size=3))
    def make(self, name: str, values: list[Any]) -> Any:
        made = Entry(name, *values), Model(name, list(values))
        self.detached.append(made)
        return made

    @rule(one=known)
    def remove(self, one: Any) -> None:
        entry, model = one
        entry.remove()
        if model.owner is not None:
            model.owner[:] = [other for other in model.owner if other is not model]
            model.owner = None
            self.detached.append(one)

    def insert_into(self, target: Any, owner: list[Model], one: Any, index: int) -> None:
        entry, model = one
        target.insert(index, entry)
        position = max(0, min(index, len(owner)))
        if model.owner is not None:
            model.owner[:] = [other for other in model.owner if other is not model]
        owner.insert(position, model)
        model.owner = owner
        self.detached = [pair for pair in self.detached if pair[1] is not model]

    @rule(one=known, which=st.integers(0, 1), index=st.integers(0, 5))
    def insert(self, one: Any, which: int, index: int) -> None:
        self.insert_into(self.documents[which], self.models[which], one, index)

    @rule(one=known, holder=known, index=st.integers(0, 5))
    def insert_below(self, one: Any, holder: Any, index: int) -> None:
        if holder[1] in one[1].below():
            try:
                holder[0].insert(index, one[0])
            except ValueError:
                if holder[1].entries is None and holder[0].group is not None:
                    holder[1].entries = []
                return
            raise AssertionError("an entry moved into itself")
        if holder[1].entries is None:
            holder[1].entries = []
        self.insert_into(holder[0], holder[1].entries, one, index)

    @rule(one=known, values=st.lists(scalars, max_size=5))
    def assign(self, one: Any, values: list[Any]) -> None:
        entry, model = one
        if model.entries is not None:
            return
        entry.values.clear()
        entry.values = values
        model.values = list(values)

    @rule(one=known, value=scalars, index=st.integers(0, 4))
    def edit_values(self, one: Any, value: Any, index: int) -> None:
        entry, model = one
        if model.entries is not None:
            return
        if index < len(model.values):
            del entry.values[index]
            del model.values[index]
        entry.values.insert(index, value)
        model.values.insert(index, value)

    @rule(one=known, name=names)
    def rename(self, one: Any, name: str) -> None:
        one[0].name = name
        one[1].name = name

    @rule(which=st.integers(0, 1), name=names)
    def remove_all(self, which: int, name: str) -> None:
        models = self.models[which]
        gone = [model for model in models if model.name == name]
        assert self.documents[which].remove_all(name) == len(gone)
        models[:] = [model for model in models if model.name != name]
        for model in gone:
            model.owner = None

    @rule(which=st.integers(0, 1))
    def begin_iterators(self, which: int) -> None:
        document = self.documents[which]
        self.iterators += [iter(document), document.walk(), document.find_all("**/a"), document.find_all("**")]
        del self.iterators[:-12]

    @rule(one=known)
    def begin_iterators_below(self, one: Any) -> None:
        self.iterators += [iter(one[0]), one[0].walk(), one[0].find_all("**")]
        del self.iterators[:-12]

    @rule()
    def step(self) -> None:
        for iterator in self.iterators:
            entry = next(iterator, None)
            assert entry is None or (entry.name and entry.path)

    @rule(one=known)
    def look(self, one: Any) -> None:
        entry, model = one
        check(entry, model)
        assert repr(entry)
        assert entry.copy() == entry
        if model.owner is not None:
            document = entry.document
            parent = entry.parent
            if document is not None:
                assert document[entry.path] is entry
                assert entry in (document if parent is None else parent)

    @rule(one=consumes(known))
    def forget(self, one: Any) -> None:
        pass

    @rule(which=st.integers(0, 1))
    def replace_document(self, which: int) -> None:
        """The old one goes, unless something of it is known."""
        self.documents[which] = Document()
        self.models[which] = []

    @invariant()
    def documents_are_as_the_model_says(self) -> None:
        for document, models in zip(self.documents, self.models):
            check_all(list(document), models)


Edits.TestCase.settings = settings(max_examples=60, stateful_step_count=60, deadline=None)
TestEdits = Edits.TestCase
