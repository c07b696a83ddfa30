autocmd BufRead,BufNewFile *.bkd setfiletype bkd
