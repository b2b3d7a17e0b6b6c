; The driver's published entries.

entryTransfer:
entryChanged:
entryParameters:
entryChoice:
entryFormat:
        ret
