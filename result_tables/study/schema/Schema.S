# The steps that make the tables of studies, in the program's read-only data: each text ends with a NUL.
        .section .rodata
        .global kestrel_study_sqlite_1
        .global kestrel_study_sqlite_2
        .global kestrel_study_postgresql_1
        .global kestrel_study_postgresql_2
kestrel_study_sqlite_1:
        .incbin SQLITE_1
        .byte 0
kestrel_study_sqlite_2:
        .incbin SQLITE_2
        .byte 0
kestrel_study_postgresql_1:
        .incbin POSTGRESQL_1
        .byte 0
kestrel_study_postgresql_2:
        .incbin POSTGRESQL_2
        .byte 0

        .section .note.GNU-stack, "", @progbits
