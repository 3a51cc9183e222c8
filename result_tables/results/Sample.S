# The sample files, as they stand, in the program's read-only data.
        .section .rodata
        .global kestrel_sample_panel_begin
        .global kestrel_sample_panel_end
        .global kestrel_sample_door_line_begin
        .global kestrel_sample_door_line_end
kestrel_sample_panel_begin:
        .incbin SAMPLE_PANEL
kestrel_sample_panel_end:
kestrel_sample_door_line_begin:
        .incbin SAMPLE_DOOR_LINE
kestrel_sample_door_line_end:

        .section .note.GNU-stack, "", @progbits
