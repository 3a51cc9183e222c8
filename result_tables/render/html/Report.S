# The style and the script of reports, as they stand, in the program's read-only data.
        .section .rodata
        .global kestrel_report_style_begin
        .global kestrel_report_style_end
        .global kestrel_report_script_begin
        .global kestrel_report_script_end
kestrel_report_style_begin:
        .incbin REPORT_STYLE
kestrel_report_style_end:
kestrel_report_script_begin:
        .incbin REPORT_SCRIPT
kestrel_report_script_end:

        .section .note.GNU-stack, "", @progbits
